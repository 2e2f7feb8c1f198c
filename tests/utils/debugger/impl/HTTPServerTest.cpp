#include "utils/debugger/InspectionTestSupport.h"

#include <tov/utils/Logging.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using tov::testing::HttpReply;
using tov::testing::InspectionHttpTest;
using tov::testing::InspectionTest;
using tov::testing::RawHttpClient;
using tov::testing::replyHead;
using tov::testing::ScriptedEngine;
using tov::utils::Facilities;
namespace resources = tov::utils::debugger::resources;

namespace {

// Listens on a port of 127.0.0.1, or of every interface, for the life of the object.
class PortHolder {
public:
    explicit PortHolder(in_addr_t interface) : socket(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(interface);
        socklen_t size = sizeof(address);
        EXPECT_EQ(0, ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
        EXPECT_EQ(0, ::listen(socket, 1));
        EXPECT_EQ(0, ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size));
        port = ntohs(address.sin_port);
    }
    ~PortHolder() { ::close(socket); }

    int socket;
    unsigned int port;
};

} // namespace

TEST_F(InspectionHttpTest, AnswersAResourceWithItsJsonBehindAnExactHeadAndRefusesMethodsWithoutAnOperation)
{
    ScriptedEngine& world = addEngine("world");
    const std::string body = "{\"engine\":\"world\",\"rest\":\"/agents/3\"}";
    EXPECT_EQ(replyHead("200 OK", "json", body.size()) + body,
              exchange(request("GET", "/api/world/agents/3?step=2&x")));
    EXPECT_EQ(std::vector<std::string>{"r /agents/3 {\"step\":2,\"x\":true}"}, world.getCalls());

    // Each method goes to its operation; the others are refused.
    const std::string options = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nAllow: GET,OPTIONS,POST,DELETE\r\n\r\n";
    const std::string refused = replyHead("400 Bad Request", "text", 0);
    const std::pair<std::string, std::string> cases[] = {
        {request("OPTIONS", "/api/world/1?x=1"), options}, // on a good path, the only answer
        {request("PUT", "/api/world/1"), refused},         {request("PATCH", "/api/world/1"), refused},
        {request("HEAD", "/api/world/1"), refused},        {request("PROPFIND", "/api/world/1"), refused},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.second, exchange(c.first)) << c.first;
    }
    EXPECT_TRUE(log.has("w: HTTP request: 'PUT' is not a supported method."));
    EXPECT_EQ(1u, world.getCalls().size()); // the GET above only
    EXPECT_EQ(std::vector<int>{200}, statuses(request("GET", "/api/world/1")));
    EXPECT_EQ(std::vector<int>{200}, statuses(request("POST", "/api/world/1", "{}")));
    EXPECT_EQ(std::vector<int>{200}, statuses(request("DELETE", "/api/world/1")));
    EXPECT_EQ(std::vector<std::string>({"r /agents/3 {\"step\":2,\"x\":true}", "r /1 {}", "c /1 {}", "d /1 {}"}),
              world.getCalls());
}

TEST_F(InspectionHttpTest, TheFirstSegmentIsApiOrTheVersionOrAPrefixOfEither)
{
    addEngine("world");
    for (const char* first : {"/api", "/a", "/0.4.0", "/0.4"}) {
        EXPECT_EQ(std::vector<int>{200}, statuses(request("GET", first + std::string("/world")))) << first;
    }
    EXPECT_EQ(std::vector<int>{200}, statuses(request("GET", "/"))); // the empty rest meets the first engine
    const std::pair<const char*, std::vector<int>> methods[] = {
        {"GET", {404}}, {"DELETE", {204}}, {"POST", {204}}, {"OPTIONS", {200, 204}}};
    for (const char* first : {"/apis", "/0.4.1", "/0.4.0.0"}) {
        for (const auto& method : methods) {
            const std::vector<HttpReply> answer = replies(request(method.first, first + std::string("/world")));
            ASSERT_EQ(method.second.size(), answer.size()) << method.first << first;
            EXPECT_EQ(method.second.back(), answer.back().status) << method.first << first;
            EXPECT_EQ("application/text; charset=utf-8", answer.back().header("Content-Type"));
            EXPECT_EQ("", answer.back().body);
        }
        EXPECT_TRUE(log.has("w: HTTP request: '" + std::string(first) + "/world' is not a supported path."));
    }
}

TEST_F(InspectionHttpTest, BadPathsGive400AndBadQueriesNoResource)
{
    ScriptedEngine& world = addEngine("world");
    EXPECT_EQ(std::vector<int>{400}, statuses(request("GET", "/%20/world")));
    EXPECT_TRUE(log.has("w: HTTP request: '/ /world' is not a valid path."));
    EXPECT_EQ(std::vector<int>{404}, statuses(request("GET", "/api/world?a=%zz")));
    EXPECT_TRUE(log.has("w: HTTP request: 'a=%zz' is not a valid query."));
    EXPECT_EQ(std::vector<int>{204}, statuses(request("DELETE", "/api/world?a=%zz")));
    EXPECT_EQ(std::vector<int>({200, 204}), statuses(request("OPTIONS", "/api/world?a=%zz")));
    EXPECT_TRUE(world.getCalls().empty());
}

TEST_F(InspectionHttpTest, ResourceStatusesBecomeHttpStatusesWithWarnings)
{
    ScriptedEngine& world = addEngine("world");
    struct Case {
        resources::Status status;
        const char* method;
        int code;
        const char* warning;
    };
    const Case cases[] = {
        {resources::Error, "GET", 400, "w: HTTP request: error while retrieving resource '/world/3?x=1'."},
        {resources::Error, "POST", 400, "w: HTTP request: error while creating resource '/world/3?x=1'."},
        {resources::Error, "DELETE", 400, "w: HTTP request: error while deleting resource '/world/3?x=1'."},
        {resources::NotFound, "GET", 404, "w: HTTP request: unknown resource '/world/3?x=1'."},
        {resources::NotFound, "POST", 204, "w: HTTP request: unknown resource '/world/3?x=1'."},
        {resources::NotFound, "DELETE", 204, "w: HTTP request: unknown resource '/world/3?x=1'."},
    };
    for (const Case& c : cases) {
        world.status = c.status;
        log.clear();
        const std::string body = std::string(c.method) == "POST" ? "{}" : "";
        EXPECT_EQ(std::vector<int>{c.code}, statuses(request(c.method, "/api/world/3?x=1", body))) << c.warning;
        EXPECT_EQ(std::vector<std::string>{c.warning}, log.getMessages());
    }
    statuses(request("GET", "/api/world"));
    EXPECT_TRUE(log.has("w: HTTP request: unknown resource '/world'.")); // no "?" without a query
}

TEST_F(InspectionHttpTest, APostBodyJoinsTheQueryAndABadOneIsRefused)
{
    ScriptedEngine& world = addEngine("world");
    EXPECT_EQ(std::vector<int>{200},
              statuses(request("POST", "/api/world?step=3", "{\"speed\": 2.5, \"name\": \"a\"}")));
    EXPECT_EQ(std::vector<std::string>{"c  {\"name\":\"a\",\"speed\":2.5,\"step\":3}"}, world.getCalls());
    // What the object refuses (the query made the root an object), and bodies too large to read. Text
    // that is not JSON only ends the reading, without a message: what was read before it stands.
    const std::string bodies[] = {
        "[1,",
        "{\"a.b\": 1}",
        "{\"step\": {\"x\": 1}}",
        std::string(200, '[') + std::string(200, ']'),
        "{\"long\": \"" + std::string(300 * 1024, 'x') + "\"}",
    };
    for (const std::string& body : bodies) {
        log.clear();
        EXPECT_EQ(std::vector<int>{400}, statuses(request("POST", "/api/world?step=3", body))) << body.substr(0, 40);
        EXPECT_TRUE(log.has("w: HTTP request: invalid request data (see above for further information)."));
        EXPECT_EQ(0u, log.count('e')); // the client's mistakes arrive as warnings
    }
    EXPECT_TRUE(log.has("w: The request body is longer than 262144 bytes."));
    EXPECT_EQ(1u, world.getCalls().size());
    EXPECT_EQ(std::vector<int>{200},
              statuses(request("POST", "/api/world", "\"" + std::string(200 * 1024, 'x') + "\"")));
}

TEST_F(InspectionHttpTest, PostOnEnginesSwitchesThemAndAnswersTwice)
{
    ScriptedEngine& world = addEngine("world", false);
    ScriptedEngine& clock = addEngine("clock");
    const std::string twice = replyHead("200 OK", "json", 2) + "{}" + replyHead("204 No Content", "json", 2) + "{}";
    struct Case {
        const char* target;
        const char* body;
        bool world;
        bool clock;
    };
    const Case cases[] = {
        {"/api/engines", "{\"world\": 1, \"clock\": false}", true, false},
        {"/api/engines", "{\"world\": 0, \"clock\": 7}", false, true},
        {"/api/engines", "{\"world\": \"yes\", \"clock\": 2.5}", false, true}, // other kinds are passed over
        {"/api/eng", "{\"world\": true}", true, true},
        {"/api/engines?clock=0", "{}", true, false}, // the query counts as well
        {"/api", "{\"clock\": 1}", true, true},      // an empty rest is a prefix of "engines"
        {"/api/engines/more", "{\"world\": false}", false, true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(twice, exchange(request("POST", c.target, c.body))) << c.target << ' ' << c.body;
        EXPECT_EQ(c.world, world.isEnabled()) << c.target << ' ' << c.body;
        EXPECT_EQ(c.clock, clock.isEnabled()) << c.target << ' ' << c.body;
    }
    log.clear();
    EXPECT_EQ(twice, exchange(request("POST", "/api/engines", "{\"ghost\": 1}")));
    EXPECT_EQ(std::vector<std::string>{"w: No register engine having the path ghost, ignoring the enabling."},
              log.getMessages());
    EXPECT_TRUE(world.getCalls().empty() && clock.getCalls().empty());
}

TEST_F(InspectionHttpTest, SuccessAnswers500WhileTheLoggerHoldsAnErrorAndTracesEachRequest)
{
    addEngine("world");
    TOV_LOG_ERROR(&log, tov::utils::error::unknownError, "the host failed");
    EXPECT_EQ(std::vector<int>{500}, statuses(request("GET", "/api/world")));
    EXPECT_EQ("{\"engine\":\"world\",\"rest\":\"\"}", replies(request("GET", "/api/world"))[0].body);
    EXPECT_EQ(std::vector<int>{404}, statuses(request("GET", "/api/zebra"))); // only success turns
    tov::testing::LockedLogger tracing(true, true, true);
    Facilities::instance().setLogger(tracing);
    EXPECT_EQ(std::vector<int>{200}, statuses(request("DELETE", "/api/world/a%2Fb?x=1")));
    Facilities::instance().setLogger(log);
    EXPECT_EQ("t: HTTP request:\n\t-method 'DELETE'\n\t-path: '/api/world/a/b'\n\t-query: 'x=1'",
              tracing.getMessages().at(0));
    log.resetErrors();
    EXPECT_EQ(std::vector<int>{200}, statuses(request("GET", "/api/world")));
}

TEST_F(InspectionTest, StartsOnceAndFailsOnATakenPortKeepingThatPort)
{
    const unsigned int port = startOnFreePort();
    ASSERT_TRUE(framework().isHttpStarted());
    const std::string running = std::to_string(port);
    EXPECT_EQ("i: Inspection HTTP server started on port " + running + ".", log.getMessages().back());
    log.clear();
    EXPECT_FALSE(framework().startHttp("127.0.0.1", port + 1));
    EXPECT_EQ(port, framework().getHttpPort());
    framework().shutdownHttp();
    framework().shutdownHttp(); // nothing left to stop
    EXPECT_EQ(std::vector<std::string>({"e: The inspection HTTP server is already running on port " + running + ".",
                                        "i: Inspection HTTP server stopped."}),
              log.getMessages());

    PortHolder loopback(INADDR_LOOPBACK);
    log.clear();
    EXPECT_FALSE(framework().startHttp("127.0.0.1", loopback.port));
    EXPECT_FALSE(framework().isHttpStarted());
    EXPECT_EQ(loopback.port, framework().getHttpPort());
    EXPECT_TRUE(
        log.has("e: Unable to start the inspection HTTP server on port " + std::to_string(loopback.port) + "."));
    // The server's own messages come as information, also those before any request.
    EXPECT_NE(std::string::npos, log.getMessages().at(0).find("cannot bind"));
    // The form without address binds every interface, which a port held there blocks as well.
    PortHolder everywhere(INADDR_ANY);
    EXPECT_FALSE(framework().startHttp(everywhere.port));
    EXPECT_EQ(everywhere.port, framework().getHttpPort());
    EXPECT_FALSE(framework().startHttp("::1", 8000));

    tov::testing::LockedLogger quiet(true, false, false);
    Facilities::instance().setLogger(quiet);
    EXPECT_FALSE(framework().startHttp("127.0.0.1", loopback.port));
    Facilities::instance().setLogger(log);
    EXPECT_EQ(1u, quiet.getMessages().size()); // nothing of the server's without information
}

TEST_F(InspectionTest, StopAndStartCyclesServeEachTimeAndTerminateStopsTheLast)
{
    addEngine("world");
    unsigned int port = 0;
    for (int cycle = 0; cycle < 4; ++cycle) {
        framework().shutdownHttp();
        port = startOnFreePort();
        ASSERT_TRUE(framework().isHttpStarted());
        const std::vector<HttpReply> answer =
            RawHttpClient::parseReplies(RawHttpClient::exchange(port, "GET /api/world HTTP/1.1\r\n\r\n"));
        ASSERT_EQ(1u, answer.size()) << cycle;
        EXPECT_EQ(200, answer[0].status);
    }
    framework().unregisterEngine("world");
    tov::utils::terminate(nullptr);
    EXPECT_EQ("i: Inspection HTTP server stopped.", log.getMessages().back());
    EXPECT_EQ("", RawHttpClient::exchange(port, "GET /api/world HTTP/1.1\r\n\r\n", 2000));
    ASSERT_TRUE(tov::utils::initialize(nullptr)); // for the tear-down
    Facilities::instance().setLogger(log);
    engines.clear();
}
