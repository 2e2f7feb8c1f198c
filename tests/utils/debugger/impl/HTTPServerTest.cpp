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
using tov::testing::ScriptedEngine;
using tov::utils::Facilities;
namespace resources = tov::utils::debugger::resources;

namespace {

std::string head(const char* status, const char* type, std::size_t length)
{
    return std::string("HTTP/1.1 ") + status + "\r\nContent-Type: application/" + type +
           "; charset=utf-8\r\nContent-Length: " + std::to_string(length) +
           "\r\nConnection: close\r\nAccess-Control-Allow-Origin: *\r\n\r\n";
}

const std::string optionsHead = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nAllow: GET,OPTIONS,POST,DELETE\r\n\r\n";

std::vector<int> statuses(const std::vector<HttpReply>& replies)
{
    std::vector<int> codes;
    for (const HttpReply& reply : replies) {
        codes.push_back(reply.status);
    }
    return codes;
}

// Holds a port on 127.0.0.1 (or on every interface) for the life of the object.
class PortHolder {
public:
    explicit PortHolder(bool everyInterface = false) : socket(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(everyInterface ? INADDR_ANY : INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        if (::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 && ::listen(socket, 1) == 0 &&
            ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0) {
            port = ntohs(address.sin_port);
        }
    }
    ~PortHolder() { ::close(socket); }

    int socket;
    unsigned int port = 0;
};

} // namespace

TEST_F(InspectionHttpTest, AnswersAResourceWithItsJsonBehindAnExactHead)
{
    ScriptedEngine& world = addEngine("world");
    const std::string body = "{\"engine\":\"world\",\"rest\":\"/agents/3\"}";
    EXPECT_EQ(head("200 OK", "json", body.size()) + body, exchange(request("GET", "/api/world/agents/3?step=2&x")));
    const ScriptedEngine::Call call = world.lastCall();
    EXPECT_EQ('r', call.operation);
    EXPECT_EQ("/agents/3", call.rest);
    EXPECT_EQ("{\"step\":2,\"x\":true}", call.query);
}

TEST_F(InspectionHttpTest, MapsEachMethodToItsOperationAndRefusesTheOthers)
{
    ScriptedEngine& world = addEngine("world");
    struct Case {
        std::string request;
        std::vector<int> statuses;
        char operation;   // what the engine saw, 0 for nothing
    };
    const Case cases[] = {
        {request("GET", "/api/world/1"), {200}, 'r'},
        {request("POST", "/api/world/1", "{}"), {200}, 'c'},
        {request("DELETE", "/api/world/1"), {200}, 'd'},
        {request("OPTIONS", "/api/world/1"), {200}, 0},
        {request("PUT", "/api/world/1"), {400}, 0},
        {request("PATCH", "/api/world/1"), {400}, 0},
        {request("get", "/api/world/1"), {400}, 0},
        {request("BREW", "/api/world/1"), {400}, 0},
    };
    for (const Case& c : cases) {
        const std::size_t callsBefore = world.getCalls().size();
        const std::vector<HttpReply> replies = RawHttpClient::parseReplies(exchange(c.request));
        EXPECT_EQ(c.statuses, statuses(replies)) << c.request;
        const std::vector<ScriptedEngine::Call> calls = world.getCalls();
        EXPECT_EQ(c.operation != 0 ? callsBefore + 1 : callsBefore, calls.size()) << c.request;
        if (c.operation != 0 && !calls.empty()) {
            EXPECT_EQ(c.operation, calls.back().operation) << c.request;
        }
    }
    EXPECT_EQ(head("400 Bad Request", "text", 0), exchange(request("PUT", "/api/world")));
    EXPECT_TRUE(log.has("w: HTTP request: 'PUT' is not a supported method."));
    EXPECT_EQ(optionsHead, exchange(request("OPTIONS", "/api/world?x=1")));
}

TEST_F(InspectionHttpTest, TheFirstSegmentIsApiOrTheVersionOrAPrefixOfEither)
{
    addEngine("world");
    for (const char* first : {"api", "a", "ap", "0.4.0", "0.4", "0"}) {
        const std::string target = std::string("/") + first + "/world";
        EXPECT_EQ(std::vector<int>{200}, statuses(replies(request("GET", target)))) << target;
    }
    // No first segment at all passes as well, and the empty rest meets the first engine.
    EXPECT_EQ(200, replies(request("GET", "/"))[0].status);
    struct Case {
        const char* method;
        std::vector<int> statuses;
    };
    const Case cases[] = {{"GET", {404}}, {"DELETE", {204}}, {"POST", {204}}, {"OPTIONS", {200, 204}}};
    for (const char* first : {"apis", "v1", "0.4.1", "0.4.0.0", "debug"}) {
        const std::string target = std::string("/") + first + "/world";
        for (const Case& c : cases) {
            const std::vector<HttpReply> answer = replies(request(c.method, target));
            EXPECT_EQ(c.statuses, statuses(answer)) << c.method << ' ' << target;
            EXPECT_EQ("", answer.back().body);
            EXPECT_EQ("application/text; charset=utf-8", answer.back().header("Content-Type"));
        }
        EXPECT_TRUE(log.has("w: HTTP request: '" + target + "' is not a supported path."));
    }
}

TEST_F(InspectionHttpTest, BadPathsGive400AndBadQueriesNoResource)
{
    ScriptedEngine& world = addEngine("world");
    EXPECT_EQ(head("400 Bad Request", "text", 0), exchange(request("GET", "/%20/world")));
    EXPECT_TRUE(log.has("w: HTTP request: '/ /world' is not a valid path."));
    EXPECT_EQ(std::vector<int>{404}, statuses(replies(request("GET", "/api/world?a=%zz"))));
    EXPECT_TRUE(log.has("w: HTTP request: 'a=%zz' is not a valid query."));
    EXPECT_EQ(std::vector<int>{204}, statuses(replies(request("DELETE", "/api/world?a=%zz"))));
    EXPECT_EQ(std::vector<int>({200, 204}), statuses(replies(request("OPTIONS", "/api/world?a=%zz"))));
    EXPECT_TRUE(world.getCalls().empty());
}

TEST_F(InspectionHttpTest, ResourceStatusesBecomeHttpStatusesWithWarnings)
{
    ScriptedEngine& world = addEngine("world");
    struct Case {
        resources::Status status;
        const char* method;
        int code;
        const char* warning;   // "" for none
    };
    const Case cases[] = {
        {resources::Ok, "GET", 200, ""},
        {resources::Ok, "DELETE", 200, ""},
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
        const std::vector<HttpReply> answer = replies(request(c.method, "/api/world/3?x=1", body));
        EXPECT_EQ(std::vector<int>{c.code}, statuses(answer)) << c.method << ' ' << c.status;
        if (*c.warning != '\0') {
            EXPECT_EQ(std::vector<std::string>{c.warning}, log.getMessages()) << c.method << ' ' << c.status;
        } else {
            EXPECT_TRUE(log.getMessages().empty());
        }
    }
    world.status = resources::NotFound;
    replies(request("GET", "/api/world"));
    EXPECT_TRUE(log.has("w: HTTP request: unknown resource '/world'."));   // no "?" without a query
    EXPECT_EQ(std::vector<int>{404}, statuses(replies(request("GET", "/api/zebra"))));
}

TEST_F(InspectionHttpTest, APostBodyJoinsTheQueryAndABadOneIsRefused)
{
    ScriptedEngine& world = addEngine("world");
    EXPECT_EQ(200, replies(request("POST", "/api/world/agents?step=3", "{\"speed\": 2.5, \"name\": \"ant\"}"))[0].status);
    EXPECT_EQ("{\"name\":\"ant\",\"speed\":2.5,\"step\":3}", world.lastCall().query);
    const std::size_t calls = world.getCalls().size();
    // What the object refuses (the query made the root an object), and bodies too large to read. Text
    // that is not JSON only ends the reading, without a message: what was read before it stands.
    const std::string bodies[] = {
        "[1,", "{\"a.b\": 1}", "{\"step\": {\"x\": 1}}", "[1, 2]", std::string(200, '[') + std::string(200, ']'),
        "{\"long\": \"" + std::string(300 * 1024, 'x') + "\"}",
    };
    for (const std::string& body : bodies) {
        log.clear();
        const std::vector<HttpReply> answer = replies(request("POST", "/api/world?step=3", body));
        EXPECT_EQ(std::vector<int>{400}, statuses(answer)) << body.substr(0, 40);
        EXPECT_TRUE(log.has("w: HTTP request: invalid request data (see above for further information)."))
            << body.substr(0, 40);
        EXPECT_EQ(0u, log.count('e')) << body.substr(0, 40);   // the reader's errors arrive as warnings
    }
    EXPECT_TRUE(log.has("w: The request body is longer than 262144 bytes."));
    EXPECT_EQ(calls, world.getCalls().size());
    // The client's mistakes left the logger without errors, so success is still 200.
    EXPECT_EQ(200, replies(request("POST", "/api/world", "{\"long\": \"" + std::string(200 * 1024, 'x') + "\"}"))[0].status);
}

TEST_F(InspectionHttpTest, PostOnEnginesSwitchesThemAndAnswersTwice)
{
    ScriptedEngine& world = addEngine("world", false);
    ScriptedEngine& clock = addEngine("clock");
    const std::string twice = head("200 OK", "json", 2) + "{}" + head("204 No Content", "json", 2) + "{}";
    EXPECT_EQ(twice, exchange(request("POST", "/api/engines", "{\"world\": 1, \"clock\": false}")));
    EXPECT_TRUE(world.isEnabled());
    EXPECT_FALSE(clock.isEnabled());
    struct Case {
        const char* target;
        const char* body;
        bool world;
        bool clock;
    };
    const Case cases[] = {
        {"/api/engines", "{\"world\": 0, \"clock\": 7}", false, true},
        {"/api/engines", "{\"world\": \"yes\", \"clock\": 2.5}", false, true},   // other kinds are passed over
        {"/api/eng", "{\"world\": true}", true, true},
        {"/api/engines?clock=0", "{}", true, false},   // the query counts as well
        {"/api", "{\"clock\": 1}", true, true},   // an empty rest is a prefix of "engines"
        {"/api/engines/whatever", "{\"world\": false}", false, true},
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

TEST_F(InspectionHttpTest, SuccessAnswers500WhileTheLoggerHoldsAnError)
{
    addEngine("world");
    TOV_LOG_ERROR(&log, tov::utils::error::unknownError, "the host failed");
    for (int i = 0; i < 2; ++i) {
        const std::vector<HttpReply> answer = replies(request("GET", "/api/world"));
        ASSERT_EQ(1u, answer.size());
        EXPECT_EQ(500, answer[0].status);
        EXPECT_EQ("{\"engine\":\"world\",\"rest\":\"\"}", answer[0].body);
    }
    EXPECT_EQ(std::vector<int>{404}, statuses(replies(request("GET", "/api/zebra"))));   // only success turns
    log.resetErrors();
    EXPECT_EQ(std::vector<int>{200}, statuses(replies(request("GET", "/api/world"))));
}

TEST_F(InspectionHttpTest, TracesEachRequestInFourLines)
{
    addEngine("world");
    tov::testing::LockedLogger tracing(true, true, true);
    Facilities::instance().setLogger(tracing);
    replies(request("DELETE", "/api/world/a%2Fb?x=1"));
    Facilities::instance().setLogger(log);
    ASSERT_FALSE(tracing.getMessages().empty());
    EXPECT_EQ("t: HTTP request:\n\t-method 'DELETE'\n\t-path: '/api/world/a/b'\n\t-query: 'x=1'",
              tracing.getMessages()[0]);
}

TEST_F(InspectionTest, StartsOnceAndKeepsTheRunningPort)
{
    const unsigned int port = tov::testing::findFreePort();
    ASSERT_TRUE(framework().startHttp("127.0.0.1", port));
    EXPECT_TRUE(log.has("i: Inspection HTTP server started on port " + std::to_string(port) + "."));
    EXPECT_FALSE(framework().startHttp("127.0.0.1", port + 1));
    EXPECT_TRUE(log.has("e: The inspection HTTP server is already running on port " + std::to_string(port) + "."));
    EXPECT_EQ(port, framework().getHttpPort());
    EXPECT_TRUE(framework().isHttpStarted());
    framework().shutdownHttp();
    EXPECT_TRUE(log.has("i: Inspection HTTP server stopped."));
    EXPECT_FALSE(framework().isHttpStarted());
    framework().shutdownHttp();   // nothing to stop
}

TEST_F(InspectionTest, AStartOnATakenPortFailsAndKeepsThatPort)
{
    PortHolder loopbackHolder;
    ASSERT_NE(0u, loopbackHolder.port);
    EXPECT_FALSE(framework().startHttp("127.0.0.1", loopbackHolder.port));
    EXPECT_FALSE(framework().isHttpStarted());
    EXPECT_EQ(loopbackHolder.port, framework().getHttpPort());
    const std::string port = std::to_string(loopbackHolder.port);
    EXPECT_TRUE(log.has("e: Unable to start the inspection HTTP server on port " + port + "."));
    // The server's own messages arrive as information, also those from before any request.
    bool relayed = false;
    for (const std::string& message : log.getMessages()) {
        relayed = relayed || (message.rfind("i: ", 0) == 0 && message.find("cannot bind") != std::string::npos);
    }
    EXPECT_TRUE(relayed);

    // The form without address binds every interface, which the held port blocks as well.
    PortHolder everywhere(true);
    ASSERT_NE(0u, everywhere.port);
    EXPECT_FALSE(framework().startHttp(everywhere.port));
    EXPECT_EQ(everywhere.port, framework().getHttpPort());
    EXPECT_FALSE(framework().startHttp("not an address", 8000));
    EXPECT_FALSE(framework().isHttpStarted());
}

TEST_F(InspectionTest, RelaysNothingOfTheServerWhenInformationIsOff)
{
    tov::testing::LockedLogger quiet(true, false, false);
    Facilities::instance().setLogger(quiet);
    PortHolder holder;
    EXPECT_FALSE(framework().startHttp("127.0.0.1", holder.port));
    Facilities::instance().setLogger(log);
    EXPECT_EQ(std::vector<std::string>{"e: Unable to start the inspection HTTP server on port " +
                                       std::to_string(holder.port) + "."},
              quiet.getMessages());
}

TEST_F(InspectionTest, StopAndStartCyclesServeEachTime)
{
    addEngine("world");
    for (int cycle = 0; cycle < 4; ++cycle) {
        unsigned int port = 0;
        for (int attempt = 0; attempt < 5 && !framework().isHttpStarted(); ++attempt) {
            port = tov::testing::findFreePort();
            framework().startHttp("127.0.0.1", port);
        }
        ASSERT_TRUE(framework().isHttpStarted());
        const std::vector<HttpReply> answer =
            RawHttpClient::parseReplies(RawHttpClient::exchange(port, "GET /api/world HTTP/1.1\r\n\r\n"));
        ASSERT_EQ(1u, answer.size()) << cycle;
        EXPECT_EQ(200, answer[0].status);
        framework().shutdownHttp();
        EXPECT_FALSE(framework().isHttpStarted());
        EXPECT_EQ("", RawHttpClient::exchange(port, "GET /api/world HTTP/1.1\r\n\r\n", 2000));
    }
}

TEST(InspectionHttpLifeCycle, TerminateStopsARunningServer)
{
    ASSERT_TRUE(tov::utils::initialize(nullptr));
    tov::testing::LockedLogger log;
    Facilities::instance().setLogger(log);
    const unsigned int port = tov::testing::findFreePort();
    ASSERT_TRUE(Facilities::instance().getInspectionFramework().startHttp("127.0.0.1", port));
    tov::utils::terminate(nullptr);
    EXPECT_TRUE(log.has("i: Inspection HTTP server stopped."));
    EXPECT_EQ("", RawHttpClient::exchange(port, "GET /api HTTP/1.1\r\n\r\n", 2000));
}
