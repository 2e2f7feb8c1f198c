// The inspector under load, in its configured form with four connection threads: simulation threads
// push and pop frames and pass locations while eight clients send a mix of requests over loopback (reads, subscriptions, event reads and deletes, suspend,
// step, resume). At the end the host still answers, every reply was well formed, the events that were
// ever queued are numbered without a gap, and live memory did not grow in the second half beyond a bound.
// TOV_SOAK_SECONDS sets the length (120 by default).

#include "utils/debugger/DebuggerTestSupport.h"

#include <tov/allocator/Allocator.h>
#include <tov/utils/debugger/HttpSettings.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <set>

namespace tov {
namespace testing {
namespace {

using Clock = std::chrono::steady_clock;

unsigned int soakSeconds()
{
    const char* text = std::getenv("TOV_SOAK_SECONDS");
    const int seconds = text != nullptr ? std::atoi(text) : 0;
    return seconds > 0 ? static_cast<unsigned int>(seconds) : 120;
}

// The numbers of a JSON array of integers such as [3,4,7].
std::vector<unsigned long> readIdentifiers(const std::string& body)
{
    std::vector<unsigned long> identifiers;
    const char* at = body.c_str() + 1;
    while (*at != '\0' && *at != ']') {
        char* end = nullptr;
        identifiers.push_back(std::strtoul(at, &end, 10));
        at = *end == ',' ? end + 1 : end;
    }
    return identifiers;
}

class SoakTest : public DebuggerTest {
protected:
    void SetUp() override
    {
        DebuggerTest::SetUp();
        framework().shutdownHttp();
        debugger::HttpSettings settings;
        settings.connectionThreads = 4;
        settings.allowedHosts.push_back("test"); // the name that the requests of the fixture give
        ASSERT_TRUE(framework().startHttp(settings));
        port = framework().getHttpPort();
    }

    // One request; a reply that is not well formed is counted and answers "".
    std::string call(const std::string& method, const std::string& path, const std::string& body = "",
                     int* status = nullptr)
    {
        const std::string raw = exchange(request(method, "/api/" + path, body));
        const std::vector<HttpReply> answers = RawHttpClient::parseReplies(raw);
        const bool wellFormed = !answers.empty() &&
                                answers[0].header("Content-Length") == std::to_string(answers[0].body.size()) &&
                                (answers[0].status == 200 || answers[0].status == 204 || answers[0].status == 400 ||
                                 answers[0].status == 404);
        if (!wellFormed) {
            ++malformed;
            return "";
        }
        if (status != nullptr) {
            *status = answers[0].status;
        }
        ++answered;
        return answers[0].body;
    }

    void client(unsigned int seed, Clock::time_point deadline)
    {
        std::minstd_rand random(seed);
        std::string subscription;
        while (Clock::now() < deadline) {
            switch (random() % 6) {
            case 0:
                call("GET", "debug/entities/" + std::to_string(random() % 4) + "/contexts");
                break;
            case 1:
                call("GET",
                     "debug/entities/" + std::to_string(random() % 4) + "/contexts/" + std::to_string(random() % 3));
                break;
            case 2: {
                // Reads one of the queued events and deletes them all, one by one, as a polling client does.
                const std::vector<unsigned long> queued = readIdentifiers(call("GET", "events"));
                if (!queued.empty()) {
                    call("GET", "events/" + std::to_string(queued[random() % queued.size()]));
                }
                for (unsigned long id : queued) {
                    int status = 0;
                    call("DELETE", "events/" + std::to_string(id), "", &status);
                    if (status == 200) {
                        std::lock_guard<std::mutex> guard(deletedMutex);
                        deleted.insert(id);
                    }
                }
                break;
            }
            case 3:
                if (subscription.empty()) {
                    const std::string reply =
                        call("POST", "events/s", "{\"type\":\"breakpoint\",\"filters\":{\"location\":\"tov:rare\"}}");
                    if (reply.size() > 14) {
                        subscription = reply.substr(13, reply.size() - 14);
                    }
                } else {
                    call("DELETE", "events/subscriptions/" + subscription);
                    subscription.clear();
                }
                break;
            case 4:
                call("POST", "debug/suspend");
                call("POST", "debug/stepin");
                break;
            default:
                call("POST", "debug/resume");
                break;
            }
        }
        if (!subscription.empty()) {
            call("DELETE", "events/subscriptions/" + subscription);
        }
    }

    std::atomic<unsigned long> answered{0};
    std::atomic<unsigned long> malformed{0};
    std::mutex deletedMutex;
    std::set<unsigned long> deleted;
};

TEST_F(SoakTest, HoldsUpUnderEightClientsAndBusySimulationThreads)
{
    const unsigned int seconds = soakSeconds();
    registerEntities({0, 1, 2, 3});
    EXPECT_EQ(200, post("events/subscriptions", "{\"type\":\"suspension\"}"));
    std::atomic<bool> running{true};
    std::atomic<int> ended{0};
    std::vector<std::thread> simulationThreads;
    for (unsigned int entity = 0; entity < 4; ++entity) {
        simulationThreads.emplace_back([this, entity, &running, &ended] {
            for (unsigned int round = 0; running; ++round) {
                simulation.push(entity, "tov:agents/forager.behavior#seek");
                simulation.pass(entity, round % 50 == 0 ? "tov:rare" : "tov:often");
                simulation.push(entity, "tov:agents/forager.behavior#eat");
                simulation.pop(entity);
                simulation.pop(entity);
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            }
            ++ended;
        });
    }

    const Clock::time_point start = Clock::now();
    const Clock::time_point deadline = start + std::chrono::seconds(seconds);
    std::vector<std::thread> clients;
    for (unsigned int i = 0; i < 8; ++i) {
        clients.emplace_back([this, i, deadline] { client(i + 1, deadline); });
    }
    // Live bytes, sampled through the run; the second half is held against its start.
    const allocator::Allocator& memory = allocator::Allocator::instance();
    unsigned long long middle = 0;
    unsigned long long highest = 0;
    while (Clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const unsigned long long live = memory.getLiveBytes();
        if (Clock::now() - start < std::chrono::seconds(seconds) / 2) {
            middle = live;
        } else {
            highest = std::max(highest, live);
        }
    }
    for (std::thread& thread : clients) {
        thread.join();
    }
    // Threads stopped at a breakpoint or a step go on once resumed, until they see the end.
    running = false;
    EXPECT_TRUE(waitFor([&] {
        debugger().resume();
        return ended == 4;
    }));
    for (std::thread& thread : simulationThreads) {
        thread.join();
    }

    EXPECT_EQ(0u, malformed.load());
    EXPECT_GT(answered.load(), 100u * seconds);
    EXPECT_EQ("{\"name\":\"default\",\"description\":\"\"}", get("debug"));
    // Every event ever queued is still queued or was deleted by a client: the numbering has no gap.
    const std::vector<unsigned long> queued = readIdentifiers(get("events"));
    std::set<unsigned long> seen(deleted.begin(), deleted.end());
    seen.insert(queued.begin(), queued.end());
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(*seen.rbegin() + 1, seen.size());
    EXPECT_LT(highest, middle + 1024u * 1024) << "grew from " << middle << " to " << highest;
    std::printf("%lu replies, %zu events, live bytes %llu at half time, at most %llu after\n", answered.load(),
                seen.size(), middle, highest);
    const unsigned int leaving[] = {0, 1, 2, 3};
    simulation.onEntitiesUnregistration(leaving, 4);
}

} // namespace
} // namespace testing
} // namespace tov
