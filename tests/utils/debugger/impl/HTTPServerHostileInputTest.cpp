// The server against what a stranger on the network may send: every exchange is bounded in time, and
// afterwards the server answers a good request and holds no more of the library's memory than before.

#include "utils/debugger/InspectionTestSupport.h"

#include <tov/allocator/Allocator.h>

#include <chrono>
#include <thread>

using tov::testing::HttpReply;
using tov::testing::RawHttpClient;

namespace {

class HostileInputTest : public tov::testing::InspectionHttpTest {
protected:
    void SetUp() override
    {
        InspectionHttpTest::SetUp();
        addEngine("world");
        expectServing(); // builds what the first request builds once
        liveBytes = tov::allocator::Allocator::instance().getLiveBytes();
    }

    void TearDown() override
    {
        expectServing();
        EXPECT_EQ(liveBytes, tov::allocator::Allocator::instance().getLiveBytes());
        InspectionHttpTest::TearDown();
    }

    void expectServing() { EXPECT_EQ(std::vector<int>{200}, statuses(request("GET", "/api/world/alive"))); }

    // Whether the server closes the connection by itself after `bytes`.
    bool closesAfter(const std::string& bytes)
    {
        RawHttpClient client(port, 20000);
        bool closed = false;
        if (client.connect()) {
            client.send(bytes);
            client.receiveAll(&closed);
        }
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
    const std::string cases[] = {
        "GET /api/world/" + std::string(100 * 1024, 'a') + " HTTP/1.1\r\n\r\n",
        manyHeaders + "\r\n",
        std::string("\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03", 11) + std::string(500, '\0'),
        "hello, is anybody there?\r\n\r\n",
        "\r\n\r\n\r\n",
        "GET /api/world%0d%0aSet-Cookie:%20x=1 HTTP/1.1\r\n\r\n",
        "GET /api/world?q=%0d%0a HTTP/1.1\r\n\r\n",
        "GET /" + std::string(2000, '/') + " HTTP/1.1\r\n\r\n",
        "GET /api/" + std::string(2000, '/') + "world HTTP/1.1\r\n\r\n",
        "GET /api/w\xc3\x28\xff\xfe/%ff%fe%c0%af?\xff=\xfe HTTP/1.1\r\n\r\n",
        "GET /api/world/%00/x HTTP/9.9\r\n\r\n",
        "POST /api/world HTTP/1.1\r\nContent-Length: -5\r\n\r\n",
        "POST /api/world HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n{}\r\n0\r\n\r\n",
        "OPTIONS * HTTP/1.1\r\n\r\n",
        "GET http://elsewhere.example/api/world HTTP/1.1\r\n\r\n",
    };
    for (const std::string& bytes : cases) {
        EXPECT_TRUE(closesAfter(bytes)) << bytes.substr(0, 60);
        expectServing();
    }
}

TEST_F(HostileInputTest, LargeAndDeepBodiesAreRefusedQuickly)
{
    const auto start = std::chrono::steady_clock::now();
    const std::string bodies[] = {
        "{\"note\":\"" + std::string(10 * 1024 * 1024, 'x') + "\"}",
        "{\"n\":" + std::string(10 * 1024 * 1024, '1') + "}",
        std::string(100000, '['),
        "{\"a\":" + std::string(100000, '['),
    };
    for (const std::string& body : bodies) {
        for (const char* target : {"/api/world", "/api/engines"}) {
            // The server may close before it has read everything: the client then sees a reset.
            for (const HttpReply& reply : replies(request("POST", target, body))) {
                EXPECT_EQ(400, reply.status) << body.substr(0, 20);
            }
            expectServing();
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
    EXPECT_EQ(1u + 8u, engines[0]->getCalls().size()); // the checks, nothing else
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
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3)) << half;
    }
}

TEST_F(HostileInputTest, ManyClientsAtOnceAreAllAnswered)
{
    std::vector<int> answered(8, 0);
    std::vector<std::thread> clients;
    clients.reserve(8);
    for (int t = 0; t < 8; ++t) {
        clients.emplace_back([this, t, &answered]() {
            for (int i = 0; i < 125; ++i) {
                const std::string rest = "/" + std::to_string(t) + "/" + std::to_string(i);
                const std::vector<HttpReply> answer = replies(request("GET", "/api/world" + rest));
                answered[t] +=
                    answer.size() == 1 && answer[0].body == "{\"engine\":\"world\",\"rest\":\"" + rest + "\"}";
            }
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_EQ(std::vector<int>(8, 125), answered);
}
