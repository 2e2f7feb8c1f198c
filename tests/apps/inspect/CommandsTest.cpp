#include "apps/inspect/Commands.h"

#include "utils/debugger/DebuggerTestSupport.h"

#include <tov/utils/ErrorType.h>

#include <sstream>

namespace tov {
namespace testing {
namespace {

using inspect::run;

std::string padded(const std::string& text, std::size_t width)
{
    return text + std::string(width > text.size() ? width - text.size() : 1, ' ');
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// The client against the host of the fixture: its inspector on a loopback port, an engine "world" that
// answers {"engine":"world","rest":...}, and the simulation engine of the debugger tests.
class InspectClientTest : public DebuggerTest {
protected:
    Outcome inspect(std::vector<std::string> arguments, unsigned int on = 0)
    {
        arguments.insert(arguments.begin(), {"--port", std::to_string(on == 0 ? port : on)});
        std::ostringstream out;
        std::ostringstream err;
        const int status = run(arguments, out, err);
        return {status, out.str(), err.str()};
    }
};

TEST_F(InspectClientTest, GetPrintsAResourceIndentedOrAsItCameWithJson)
{
    ScriptedEngine& world = addEngine("world");
    const Outcome shown = inspect({"get", "/world/agents/3?step=2"});
    EXPECT_EQ(0, shown.status) << shown.err;
    EXPECT_EQ("{\n  \"engine\": \"world\",\n  \"rest\": \"/agents/3\"\n}\n", shown.out);
    EXPECT_EQ("", shown.err);
    const Outcome raw = inspect({"get", "world/a b", "--json"});
    EXPECT_EQ("{\"engine\":\"world\",\"rest\":\"/a b\"}\n", raw.out);
    EXPECT_EQ((std::vector<std::string>{"r /agents/3 {\"step\":2}", "r /a b {}"}), world.getCalls());
}

TEST_F(InspectClientTest, ErrorAnswersExitOneWithOneLineAndA500StillShowsTheResource)
{
    ScriptedEngine& world = addEngine("world");
    struct Case {
        resources::Status status;
        std::vector<std::string> arguments;
        std::string err;
    };
    const Case cases[] = {
        {resources::Error, {"get", "world/x"}, "GET /api/world/x: refused (400 Bad Request)\n"},
        {resources::NotFound, {"get", "world/x"}, "GET /api/world/x: no such resource (404 Not Found)\n"},
        {resources::Ok, {"get", "nothing"}, "GET /api/nothing: no such resource (404 Not Found)\n"},
    };
    for (const Case& c : cases) {
        world.status = c.status;
        const Outcome outcome = inspect(c.arguments);
        EXPECT_EQ(1, outcome.status) << c.err;
        EXPECT_EQ("", outcome.out);
        EXPECT_EQ(c.err, outcome.err);
    }
    // Once the host has logged an error it answers 500 with the resource, until it resets.
    world.status = resources::Ok;
    log.logError(utils::error::unknownError, __FILE__, __LINE__, "a host's error");
    const Outcome degraded = inspect({"get", "world", "--json"});
    EXPECT_EQ(1, degraded.status);
    EXPECT_EQ("{\"engine\":\"world\",\"rest\":\"\"}\n", degraded.out);
    EXPECT_EQ("note: the host answered 500 Internal Server Error: it has logged an error since it last reset\n",
              degraded.err);
    log.resetErrors();
}

TEST_F(InspectClientTest, EnginesProbesTheWellKnownPathsAndTheGivenOnes)
{
    addEngine("world");
    const Outcome table = inspect({"engines", "extra", "world"});
    EXPECT_EQ(0, table.status) << table.err;
    EXPECT_EQ("PATH    ANSWERS  STATUS\n"
              "debug   yes      200 OK\n"
              "events  yes      200 OK\n"
              "world   yes      200 OK\n"
              "extra   no       404 Not Found\n",
              table.out);
    EXPECT_EQ("{\"debug\":200,\"events\":200,\"world\":200}\n", inspect({"--json", "engines"}).out);
    framework().unregisterEngine("world");
    EXPECT_EQ("{\"debug\":200,\"events\":200,\"world\":404}\n", inspect({"--json", "engines"}).out);
}

TEST_F(InspectClientTest, NobodyListeningIsExitThreeWithExactlyOneLine)
{
    const unsigned int closed = findFreePort();
    const std::string where = "127.0.0.1:" + std::to_string(closed);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"status"}, {"get", "world"}, {"events", "--follow"}, {"engines"},
          {"wait-suspended"}, {"enable", "world"}}) {
        const Outcome outcome = inspect(arguments, closed);
        EXPECT_EQ(3, outcome.status) << arguments[0];
        EXPECT_EQ("", outcome.out) << arguments[0];
        EXPECT_EQ("cannot connect to " + where + ": connection refused\n", outcome.err) << arguments[0];
    }
    const Outcome named = inspect({"--host", "localhost", "status"}, closed);
    EXPECT_EQ("cannot connect to localhost:" + std::to_string(closed) + ": connection refused\n", named.err);
}

TEST_F(InspectClientTest, EnableAndDisableActOnTheFirstOfTheHostsTwoReplies)
{
    ScriptedEngine& world = addEngine("world", false);
    const Outcome enabled = inspect({"enable", "world"});
    EXPECT_EQ(0, enabled.status) << enabled.err;
    EXPECT_EQ("enabled world\n", enabled.out);
    EXPECT_TRUE(framework().isEngineEnabled("world"));
    const Outcome disabled = inspect({"disable", "world", "--json"});
    EXPECT_EQ(0, disabled.status) << disabled.err;
    EXPECT_EQ("{}\n", disabled.out);
    EXPECT_FALSE(framework().isEngineEnabled("world"));
    EXPECT_EQ(1, world.enables);
    EXPECT_EQ(1, world.disables);
}

TEST_F(InspectClientTest, UsageErrorsExitTwoBeforeAnyConnection)
{
    const unsigned int closed = findFreePort();   // a connection attempt would make it 3
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{}, "no command"},
        {{"frobnicate"}, "unknown command 'frobnicate'"},
        {{"stack"}, "wrong number of arguments for stack"},
        {{"entities", "extra"}, "wrong number of arguments for entities"},
        {{"stack", "-1"}, "'-1' is no entity number"},
        {{"stack", "4294967296"}, "'4294967296' is no entity number"},
        {{"context", "1", "x"}, "'x' is no frame index"},
        {{"step", "sideways"}, "step goes in, over or out, not 'sideways'"},
        {{"subscribe", "nothing"}, "'nothing' is no event type (initialization, termination, disconnection, "
                                   "suspension, registration, unregistration, breakpoint)"},
        {{"unsubscribe", "some"}, "'some' is neither a request id nor all"},
        {{"break", "tov:a", "--entity"}, "--entity needs a value"},
        {{"break", "tov:a", "--hits=many"}, "'many' is no hit count"},
        {{"events", "--bogus"}, "events takes no option --bogus"},
        {{"events", "--follow=yes"}, "events takes no option --follow=yes"},
        {{"wait-suspended", "--timeout", "soon"}, "'soon' is no number of seconds"},
        {{"--port", "65536", "status"}, "'65536' is no port"},
        {{"status", "--host"}, "--host needs a value"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = inspect(c.first, closed);
        EXPECT_EQ(2, outcome.status) << c.second;
        EXPECT_EQ("", outcome.out);
        EXPECT_EQ("tov-inspect: " + c.second + "\ntry 'tov-inspect --help'\n", outcome.err);
    }
    const Outcome help = inspect({"status", "--help"}, closed);
    EXPECT_EQ(0, help.status);
    EXPECT_EQ(inspect::getUsage(), help.out);
    // Behind "--" every word is the command's.
    EXPECT_EQ("tov-inspect: '--1' is no entity number\ntry 'tov-inspect --help'\n",
              inspect({"--", "stack", "--1"}, closed).err);
}

TEST_F(InspectClientTest, EntitiesStacksAndFramesShowAsTablesAndDocuments)
{
    EXPECT_EQ("no entities\n", inspect({"entities"}).out);
    registerEntities({0, 1});
    simulation.push(0, "tov:agents/a");
    EXPECT_EQ("ENTITY\n0\n1\n", inspect({"entities"}).out);
    EXPECT_EQ("[{\"index\":0},{\"index\":1}]\n", inspect({"entities", "--json"}).out);
    EXPECT_EQ("INDEX  LOCATION\n0      tov:simulation\n1      tov:agents/a\n", inspect({"stack", "0"}).out);
    EXPECT_EQ("{\n  \"at\": \"tov:agents/a\"\n}\n", inspect({"context", "0", "1"}).out);
    EXPECT_EQ("{}\n", inspect({"context", "0", "0"}).out);
    const std::pair<std::vector<std::string>, std::string> missing[] = {
        {{"stack", "2"}, "no entity 2\n"},
        {{"context", "0", "2"}, "no frame 2 on entity 0\n"},
    };
    for (const auto& c : missing) {
        const Outcome outcome = inspect(c.first);
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ(c.second, outcome.err);
    }
    // A frame of an engine that declared its frames invalid shows no content.
    simulation.facade->invalidateContexts(simulation);
    EXPECT_EQ("(no content)\n", inspect({"context", "0", "1"}).out);
    simulation.pop(0);
}

TEST_F(InspectClientTest, SuspendWaitStepAndResumeTellTheStateAndTheRefusals)
{
    registerEntities({0});
    EXPECT_EQ("running\n", inspect({"status"}).out);
    const std::pair<std::vector<std::string>, std::string> refusedWhileRunning[] = {
        {{"step", "in"}, "step in: refused in this state (the simulation is not suspended)\n"},
        {{"resume"}, "resume: refused in this state (nothing was suspended; what was armed is cleared)\n"},
    };
    for (const auto& c : refusedWhileRunning) {
        const Outcome outcome = inspect(c.first);
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ(c.second, outcome.err);
    }
    const Outcome stillRunning = inspect({"wait-suspended", "--timeout=0.2"});
    EXPECT_EQ(1, stillRunning.status);
    EXPECT_EQ("still running after 0.2 s\n", stillRunning.err);

    EXPECT_EQ("every entity stops at its next frame change\n", inspect({"suspend"}).out);
    simulation.run(0, {push("tov:a"), pop()});
    const Outcome stopped = inspect({"wait-suspended", "--timeout", "5"});
    EXPECT_EQ(0, stopped.status) << stopped.err;
    EXPECT_EQ("suspended, entity 0\n", stopped.out);
    const Outcome again = inspect({"suspend", "0"});
    EXPECT_EQ(1, again.status);
    EXPECT_EQ("suspend: refused in this state (the simulation is suspended already)\n", again.err);
    EXPECT_EQ("{\"suspended\":true,\"entity\":0}\n", inspect({"status", "--json"}).out);

    // Over the frame: the entity stops again when it leaves it.
    EXPECT_EQ("stepping over\n", inspect({"step", "over"}).out);
    EXPECT_EQ(0, inspect({"wait-suspended", "--timeout", "5"}).status);
    EXPECT_EQ("resumed\n", inspect({"resume"}).out);
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 1; }));
    EXPECT_EQ("running (last stopped: entity 0)\n", inspect({"status"}).out);

    // Entity 0 cannot be named to the host: the client says that everything stops.
    const Outcome zero = inspect({"suspend", "0"});
    EXPECT_EQ("every entity stops at its next frame change\n", zero.out);
    EXPECT_EQ("note: the host cannot be told entity 0 alone; every entity stops\n", zero.err);
    const Outcome unknown = inspect({"suspend", "9"});
    EXPECT_EQ(1, unknown.status);
    EXPECT_EQ("suspend: refused (entity 9 is not registered, or the simulation is suspended already)\n",
              unknown.err);
    debugger().resume();   // disarms
}

TEST_F(InspectClientTest, BreakpointsCarryTheirFiltersAndEventsAreListedAndDeleted)
{
    registerEntities({0, 1});
    const Outcome subscribed = inspect({"break", "tov:b", "--entity", "0", "--hits=2"});
    EXPECT_EQ(0, subscribed.status) << subscribed.err;
    EXPECT_EQ("", subscribed.err);
    ASSERT_EQ(0u, subscribed.out.find("breakpoint request "));
    const std::string request = subscribed.out.substr(19, subscribed.out.size() - 20);
    // Entity 1 is filtered out; entity 0 passes once without a stop and stops at its second pass.
    simulation.run(1, {pass("tov:b"), pass("tov:b")});
    ASSERT_TRUE(waitFor([this] { return simulation.finished == 1; }));
    simulation.run(0, {pass("tov:b"), pass("tov:b")});
    EXPECT_EQ("suspended, entity 0\n", inspect({"wait-suspended", "--timeout", "5"}).out);
    EXPECT_EQ("resumed\n", inspect({"resume"}).out);
    ASSERT_TRUE(waitFor([this] { return simulation.finished == 2; }));

    EXPECT_EQ(0u, inspect({"subscribe", "termination"}).out.find("termination request "));
    EXPECT_EQ("ID    TYPE            REQUEST  ENTITY  LOCATION\n"
              "0     breakpoint      " + padded(request, 9) + "0       tov:b\n",
              inspect({"events"}).out);
    EXPECT_EQ("{\"id\":0,\"type\":\"breakpoint\",\"requestId\":" + request + ",\"entity\":0,\"location\":\"tov:b\"}\n",
              inspect({"events", "--json", "--delete"}).out);
    EXPECT_EQ("no events\n", inspect({"events"}).out);

    const Outcome missing = inspect({"unsubscribe", "999"});
    EXPECT_EQ(1, missing.status);
    EXPECT_EQ("no subscription 999\n", missing.err);
    EXPECT_EQ("request " + request + " ended\n", inspect({"unsubscribe", request}).out);
    EXPECT_EQ("every subscription ended\n", inspect({"unsubscribe", "all"}).out);

    // The host reads each entity of the filter as 0, which the client tells.
    const Outcome other = inspect({"break", "tov:c", "--entity", "0", "--entity", "7"});
    EXPECT_EQ(0, other.status);
    EXPECT_EQ("note: the host reads every entity of a breakpoint filter as 0\n", other.err);
}

TEST_F(InspectClientTest, FollowingPrintsNewEventsOnceAndDeletesThem)
{
    const std::string subscribed = inspect({"subscribe", "registration"}).out;
    ASSERT_EQ(0u, subscribed.find("registration request "));
    const std::string request = subscribed.substr(21, subscribed.size() - 22);
    registerEntities({4});
    std::atomic<bool> done{false};
    Outcome followed{};
    std::thread follower([&] {
        followed = inspect({"events", "--follow", "--count", "2"});
        done = true;
    });
    // The second event comes while the client polls.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    registerEntities({5});
    EXPECT_TRUE(waitFor([&] { return done.load(); }));
    framework().shutdownHttp();   // ends a client that missed its count
    follower.join();
    EXPECT_EQ(0, followed.status) << followed.err;
    EXPECT_EQ("ID    TYPE            REQUEST  ENTITY  LOCATION\n"
              "0     registration    " + padded(request, 9) + "4       -\n"
              "1     registration    " + padded(request, 9) + "5       -\n",
              followed.out);
}

TEST_F(InspectClientTest, FollowingEndsWhenInterrupted)
{
    std::atomic<bool> done{false};
    Outcome followed{};
    std::thread follower([&] {
        followed = inspect({"events", "--follow"});
        done = true;
    });
    // Each run starts uninterrupted, so the interrupt is repeated until it has been seen.
    EXPECT_TRUE(waitFor([&] {
        inspect::interrupt();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return done.load();
    }));
    framework().shutdownHttp();
    follower.join();
    EXPECT_EQ(0, followed.status) << followed.err;
    EXPECT_EQ("", followed.out);
}

} // namespace
} // namespace testing
} // namespace tov
