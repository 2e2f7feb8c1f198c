// The server against what a stranger on the network may send: every case is bounded in time, and the
// server must answer a good request afterwards without having kept any memory of the library.

#include "utils/debugger/InspectionTestSupport.h"

#include <tov/allocator/Allocator.h>

#include <chrono>
#include <thread>

using tov::testing::HttpReply;
using tov::testing::InspectionHttpTest;
using tov::testing::RawHttpClient;

namespace {

class HostileInputTest : public InspectionHttpTest {
protected:
    void SetUp() override
    {
        InspectionHttpTest::SetUp();
        addEngine("world");
        expectServing();   // warms up what the first request builds once
        liveBytes = tov::allocator::Allocator::instance().getLiveBytes();
    }

    void TearDown() override
    {
        expectServing();
        EXPECT_EQ(liveBytes, tov::allocator::Allocator::instance().getLiveBytes());
        InspectionHttpTest::TearDown();
    }

    void expectServing()
    {
        const std::vector<HttpReply> answer = replies(request("GET", "/api/world/alive"));
        ASSERT_EQ(1u, answer.size());
        EXPECT_EQ(200, answer[0].status);
    }

    // Sends `bytes` and waits for the server to close; true when it did within the time.
    bool sendAndExpectClose(const std::string& bytes, int timeoutMilliseconds = 20000)
    {
        RawHttpClient client(port, timeoutMilliseconds);
        if (!client.connect()) {
            return false;
        }
        client.send(bytes);
        bool closed = false;
        client.receiveAll(&closed);
        return closed;
    }

    unsigned long long liveBytes = 0;
};

} // namespace

TEST_F(HostileInputTest, MalformedAndOversizedRequestsAreClosedAndTheServerGoesOn)
{
    std::string manyHeaders = "GET /api/world HTTP/1.1\r\n";
    for (int i = 0; i < 10000; ++i) {
        manyHeaders += "X-H" + std::to_string(i) + ": v\r\n";
    }
    manyHeaders += "\r\n";
    const std::string cases[] = {
        "GET /api/world/" + std::string(100 * 1024, 'a') + " HTTP/1.1\r\n\r\n",
        manyHeaders,
        std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11) + std::string(500, '\x00'),
        "hello, is anybody there?\r\n\r\n",
        "GET /api/world%0d%0aSet-Cookie:%20x=1 HTTP/1.1\r\n\r\n",
        "GET /api/world?q=%0d%0a HTTP/1.1\r\n\r\n",
        "GET /" + std::string(2000, '/') + " HTTP/1.1\r\n\r\n",
        "GET /api/" + std::string(2000, '/') + "world HTTP/1.1\r\n\r\n",
        "GET /api/w\xc3\x28\xff\xfe/%ff%fe%c0%af?\xff=\xfe HTTP/1.1\r\n\r\n",
        "GET /api/world HTTP/9.9\r\n\r\n",
        "GET /api/world HTTP/1.1\r\nContent-Length: -5\r\n\r\n",
        "POST /api/world HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n{}\r\n0\r\n\r\n",
        "GET /api/world/%00/x HTTP/1.1\r\n\r\n",
        "OPTIONS * HTTP/1.1\r\n\r\n",
        "GET http://elsewhere.example/api/world HTTP/1.1\r\n\r\n",
        "\r\n\r\n\r\n",
    };
    for (const std::string& bytes : cases) {
        EXPECT_TRUE(sendAndExpectClose(bytes)) << bytes.substr(0, 60);
        expectServing();
    }
}

TEST_F(HostileInputTest, LargeAndDeepBodiesAreRefusedQuickly)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string bodies[] = {
        "{\"note\":\"" + std::string(10 * 1024 * 1024, 'x') + "\"}",
        "{\"n\":" + std::string(10 * 1024 * 1024, '1') + "}",
        std::string(10 * 1024 * 1024, '#'),
        std::string(100000, '['),
        "{\"a\":" + std::string(100000, '['),
    };
    for (const std::string& body : bodies) {
        for (const char* target : {"/api/world", "/api/engines"}) {
            const std::string raw = exchange(request("POST", target, body));
            // The server may close before it has read everything, and the client then sees a reset.
            const std::vector<HttpReply> answer = RawHttpClient::parseReplies(raw);
            if (!answer.empty()) {
                EXPECT_EQ(400, answer[0].status) << body.substr(0, 20);
            }
            expectServing();
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
    EXPECT_EQ(1u + 10u, engines[0]->getCalls().size());   // the warm-up and the checks, nothing else
    EXPECT_EQ(0u, log.count('e'));
}

TEST_F(HostileInputTest, AClientThatLeavesHalfwayDoesNotHoldTheNextOne)
{
    const std::string halves[] = {
        "GET /api/wor",
        "POST /api/world HTTP/1.1\r\n",
        request("POST", "/api/world", "{\"a\": [1, 2, 3]}").substr(0, 60),
        "POST /api/world HTTP/1.1\r\nContent-Length: 99999999999999999999\r\n\r\n{\"a\": ",
    };
    for (const std::string& half : halves) {
        {
            RawHttpClient leaving(port, 2000);
            ASSERT_TRUE(leaving.connect());
            leaving.send(half);
        }
        const auto start = std::chrono::steady_clock::now();
        expectServing();
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    }
}

TEST_F(HostileInputTest, ManyClientsAtOnceAreAllAnswered)
{
    const int threads = 8;
    const int perThread = 125;
    std::vector<int> answered(threads, 0);
    std::vector<std::thread> clients;
    for (int t = 0; t < threads; ++t) {
        clients.emplace_back([this, t, &answered]() {
            for (int i = 0; i < perThread; ++i) {
                const std::string target = "/api/world/" + std::to_string(t) + "/" + std::to_string(i);
                const std::vector<HttpReply> answer =
                    RawHttpClient::parseReplies(RawHttpClient::exchange(port, request("GET", target), 20000));
                if (answer.size() == 1 && answer[0].status == 200 &&
                    answer[0].body == "{\"engine\":\"world\",\"rest\":\"/" + std::to_string(t) + "/" +
                                          std::to_string(i) + "\"}") {
                    ++answered[t];
                }
            }
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    for (int t = 0; t < threads; ++t) {
        EXPECT_EQ(perThread, answered[t]) << t;
    }
    EXPECT_EQ(static_cast<std::size_t>(threads * perThread + 1), engines[0]->getCalls().size());
}
