// The configured form of the server as a stranger would try it: a page of another site, a name
// rebound to this machine, a missing token, silent and slow clients, and addresses that would widen
// what listens.

#include "utils/debugger/InspectionTestSupport.h"

#include <tov/utils/debugger/HttpSettings.h>

#include <chrono>
#include <thread>

using tov::testing::HttpReply;
using tov::testing::RawHttpClient;
using tov::utils::Facilities;
using tov::utils::debugger::HttpSettings;

namespace {

class ConfiguredHttpTest : public tov::testing::InspectionTest {
protected:
    void SetUp() override
    {
        InspectionTest::SetUp();
        world = &addEngine("world");
    }

    // The log keeps what the start said.
    void start(const HttpSettings& settings = HttpSettings())
    {
        log.clear();
        ASSERT_TRUE(framework().startHttp(settings));
        port = framework().getHttpPort();
    }

    // One request with the given extra header lines; "Host" names the server unless `headers` does.
    HttpReply send(const std::string& method, const std::string& target, const std::string& headers = "",
                   const std::string& body = "")
    {
        const std::string host =
            headers.find("Host:") == std::string::npos ? "Host: 127.0.0.1:" + std::to_string(port) + "\r\n" : "";
        const std::vector<HttpReply> replies = RawHttpClient::parseReplies(
            RawHttpClient::exchange(port, method + " " + target + " HTTP/1.1\r\n" + host + headers +
                                              "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body));
        EXPECT_EQ(1u, replies.size()) << method << " " << target; // never a second reply behind
        return replies.empty() ? HttpReply() : replies[0];
    }

    std::string own() const { return "http://127.0.0.1:" + std::to_string(port); }

    tov::testing::ScriptedEngine* world = nullptr;
    unsigned int port = 0;
};

} // namespace

TEST_F(ConfiguredHttpTest, RefusesEveryAddressThatIsNotOneAddressAndReportsTheBoundPort)
{
    const char* refused[] = {
        "256.0.0.0", "999.1.1.1", "127.0.0.1:23480,0.0.0.0", "127.0.0.1:80", "", "example.com", "127.1", "[::1",
        "::1",       " 127.0.0.1"};
    for (const char* address : refused) {
        HttpSettings settings;
        settings.address = address;
        log.clear();
        EXPECT_FALSE(framework().startHttp(settings)) << address;
        EXPECT_FALSE(framework().isHttpStarted());
        EXPECT_TRUE(log.has(std::string("e: The inspection HTTP server cannot listen on '") + address +
                            "': an address is an IPv4 address such as 127.0.0.1, an IPv6 address in brackets such "
                            "as [::1], or localhost."))
            << address;
    }
    HttpSettings high;
    high.port = 70000;
    EXPECT_FALSE(framework().startHttp(high));
    EXPECT_TRUE(log.has("e: The inspection HTTP server cannot listen on '127.0.0.1': port 70000 is above 65535."));
    EXPECT_FALSE(framework().startHttp("256.0.0.0", 0)); // the address form is checked the same way

    HttpSettings local;
    local.address = "localhost";
    log.clear();
    ASSERT_TRUE(framework().startHttp(local));
    port = framework().getHttpPort();
    EXPECT_NE(0u, port);
    EXPECT_TRUE(log.has("i: Inspection HTTP server started on port " + std::to_string(port) + "."));
    EXPECT_EQ(200, send("GET", "/api/world").status);

    framework().shutdownHttp();
    HttpSettings everywhere;
    everywhere.address = "0.0.0.0";
    start(everywhere);
    EXPECT_EQ(200, send("GET", "/api/world").status);
    const std::vector<std::string> messages = log.getMessages();
    EXPECT_TRUE(std::any_of(messages.begin(), messages.end(), [](const std::string& message) {
        return message.rfind("w: The inspection HTTP server listens on 0.0.0.0 without an access token", 0) == 0;
    }));
}

TEST_F(ConfiguredHttpTest, PagesOfOtherSitesAndReboundNamesNeverReachAnEngine)
{
    HttpSettings settings;
    settings.allowedOrigins.push_back("http://localhost:5173/");
    settings.allowedHosts.push_back("sim.test");
    start(settings);
    struct Case {
        std::string headers;
        int status;
        std::string allowOrigin;
    } cases[] = {
        {"Origin: http://attacker.example\r\nContent-Type: text/plain\r\n", 403, ""},
        {"Origin: null\r\n", 403, ""},
        {"Origin: " + own() + ".evil.example\r\n", 403, ""},
        {"Host: evil.example:" + std::to_string(port) + "\r\n", 403, ""},
        {"Host: evil.example\r\nOrigin: http://evil.example\r\n", 403, ""},
        {"", 200, ""},
        {"Origin: " + own() + "\r\n", 200, own()},
        {"Origin: http://LOCALHOST:5173\r\n", 200, "http://LOCALHOST:5173"},
        {"Host: sim.test:" + std::to_string(port) + "\r\nOrigin: http://sim.test:" + std::to_string(port) + "\r\n", 200,
         "http://sim.test:" + std::to_string(port)},
        {"Host: [::1]:1\r\n", 200, ""},
    };
    for (const Case& c : cases) {
        const HttpReply reply = send("POST", "/api/world/suspend", c.headers, "{}");
        EXPECT_EQ(c.status, reply.status) << c.headers;
        EXPECT_EQ(c.allowOrigin, reply.header("Access-Control-Allow-Origin")) << c.headers;
        EXPECT_EQ("Origin", reply.header("Vary"));
        if (c.status == 403) {
            EXPECT_EQ("application/json; charset=utf-8", reply.header("Content-Type"));
            EXPECT_EQ(0u, reply.body.find("{\"error\":\"HTTP request: ")) << reply.body;
        }
    }
    EXPECT_EQ(5u, world->getCalls().size()); // the admitted ones only
    EXPECT_TRUE(log.has("w: HTTP request: origin 'http://attacker.example' is not allowed."));

    const HttpReply preflight = send("OPTIONS", "/api/world/suspend",
                                     "Origin: http://localhost:5173\r\nAccess-Control-Request-Method: POST\r\n");
    EXPECT_EQ(204, preflight.status);
    EXPECT_EQ("http://localhost:5173", preflight.header("Access-Control-Allow-Origin"));
    EXPECT_EQ("GET, POST, DELETE, OPTIONS", preflight.header("Access-Control-Allow-Methods"));
    EXPECT_EQ(403, send("OPTIONS", "/api/world", "Origin: http://attacker.example\r\n").status);
}

TEST_F(ConfiguredHttpTest, ATokenIsAskedOfEveryRequestButAPreflightAndTheViewersPage)
{
    HttpSettings settings;
    settings.accessToken = "s3cret";
    start(settings);
    const std::string refusal =
        "{\"error\":\"HTTP request: a valid access token is required (Authorization: Bearer <token>).\"}";
    for (const char* headers : {"", "Authorization: Bearer wrong\r\n", "Authorization: Bearer s3cre\r\n",
                                "Authorization: Basic czNjcmV0\r\n", "Authorization: Bearer s3cret2\r\n"}) {
        const HttpReply reply = send("GET", "/api/world", headers);
        EXPECT_EQ(401, reply.status) << headers;
        EXPECT_EQ(refusal, reply.body);
        EXPECT_EQ("Bearer", reply.header("WWW-Authenticate"));
    }
    EXPECT_EQ(200, send("GET", "/api/world", "Authorization: bearer s3cret\r\n").status);
    EXPECT_EQ(204, send("OPTIONS", "/api/world", "Origin: " + own() + "\r\n").status);

    // The viewer's page is served without the token, and only when asked.
    const HttpReply page = send("GET", "/ui/");
    EXPECT_EQ(200, page.status);
    EXPECT_EQ("text/html; charset=utf-8", page.header("Content-Type"));
    EXPECT_EQ("no-cache", page.header("Cache-Control"));
    EXPECT_NE(std::string::npos, page.body.find("<html"));
    EXPECT_EQ(304, send("GET", "/ui/index.html", "If-None-Match: " + page.header("ETag") + "\r\n").status);
    EXPECT_EQ("/ui/", send("GET", "/ui").header("Location"));
    EXPECT_EQ(401, send("GET", "/ui/../api/world").status); // dot segments are resolved before the checks
    EXPECT_EQ(405, send("POST", "/ui/", "", "{}").status);
    EXPECT_EQ(403, send("GET", "/ui/", "Host: evil.example\r\n").status);
    EXPECT_EQ(401, send("GET", "/api/world").status); // the page is free, the resources are not

    framework().shutdownHttp();
    settings.serveViewer = false;
    settings.accessToken.clear();
    start(settings);
    EXPECT_EQ(404, send("GET", "/ui/").status);
    EXPECT_EQ(1u, world->getCalls().size()); // only the request with the token reached an engine
}

TEST_F(ConfiguredHttpTest, EveryRefusalSaysWhyInJsonAndOnlyOnce)
{
    HttpSettings settings;
    settings.maximumBodySize = 64;
    start(settings);
    struct Case {
        std::string method, target, body;
        int status;
        std::string error;
    } cases[] = {
        {"PUT", "/api/world", "", 405, "HTTP request: 'PUT' is not a supported method."},
        {"GET", "/elsewhere/world", "", 404, "HTTP request: '/elsewhere/world' is not a supported path."},
        {"DELETE", "/elsewhere/world", "", 404, "HTTP request: '/elsewhere/world' is not a supported path."},
        {"GET", "/api/zebra?a=1", "", 404, "HTTP request: unknown resource '/zebra?a=1'."},
        {"POST", "/api/zebra", "{}", 404, "HTTP request: unknown resource '/zebra'."},
        {"POST", "/api/world", "{\"a.b\": 1}", 400,
         "HTTP request: invalid request data (see above for further information)."},
        {"POST", "/api/world", std::string(65, ' '), 413, "HTTP request: the body is longer than 64 bytes."},
        {"GET", "/api/w\xff", "", 400, "HTTP request: the server refused the request (Bad request)."},
    };
    for (const Case& c : cases) {
        const HttpReply reply = send(c.method, c.target, "", c.body);
        EXPECT_EQ(c.status, reply.status) << c.method << " " << c.target;
        EXPECT_EQ("{\"error\":\"" + c.error + "\"}", reply.body);
        EXPECT_EQ("application/json; charset=utf-8", reply.header("Content-Type"));
    }
    EXPECT_EQ("GET, POST, DELETE, OPTIONS", send("PUT", "/api/world").header("Allow"));
    EXPECT_TRUE(log.has("w: HTTP request: 'PUT' is not a supported method."));

    world->status = tov::testing::resources::Error;
    EXPECT_EQ("{\"error\":\"HTTP request: error while retrieving resource '/world/x'.\"}",
              send("GET", "/api/world/x").body);
    world->status = tov::testing::resources::Ok;
    // An error logged before the request is not the request's fault; one logged during it is.
    TOV_LOG_ERROR(&log, tov::utils::error::unknownError, "earlier");
    EXPECT_EQ(200, send("GET", "/api/world").status);
    log.resetErrors();
    EXPECT_EQ("{}", send("POST", "/api/engines", "", "{\"world\":0}").body);
    EXPECT_EQ("[{\"path\":\"debug\",\"enabled\":false},{\"path\":\"events\",\"enabled\":false},"
              "{\"path\":\"world\",\"enabled\":false}]",
              send("GET", "/api/engines").body);
}

// Three clients that send nothing and one that stops halfway through its body: each holds a thread of
// its own until the time-out, and the others are served meanwhile.
TEST_F(ConfiguredHttpTest, SilentAndSlowClientsStallNobodyElse)
{
    start();
    std::vector<std::unique_ptr<RawHttpClient>> stalled;
    for (int i = 0; i < 4; ++i) {
        stalled.push_back(std::make_unique<RawHttpClient>(port, 10000));
        ASSERT_TRUE(stalled.back()->connect());
    }
    stalled.back()->send("POST /api/world HTTP/1.1\r\nHost: localhost\r\nContent-Length: 100\r\n\r\n{\"half\":");
    // The server takes the four in unseen; the pause lets it, and a probe that came first would only
    // make the test weaker, never fail it.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    std::chrono::milliseconds slowest(0);
    for (int i = 0; i < 50; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(200, send("GET", "/api/world").status);
        slowest = std::max(
            slowest, std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin));
    }
    EXPECT_LT(slowest.count(), 100);
}

TEST_F(ConfiguredHttpTest, MoreIdleConnectionsThanThreadsWaitOnlyForTheTimeOut)
{
    HttpSettings settings;
    settings.connectionThreads = 2;
    settings.requestTimeoutMilliseconds = 500;
    start(settings);
    std::vector<std::unique_ptr<RawHttpClient>> idle;
    for (int i = 0; i < 6; ++i) {
        idle.push_back(std::make_unique<RawHttpClient>(port, 10000));
        ASSERT_TRUE(idle.back()->connect());
        idle.back()->send("G");
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(200, send("GET", "/api/world").status);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(6 * 500 / 2 + 1000));
}
