// The reply, the body input and the logger wrapper of the HTTP server, and its request handler, over a
// connection in memory.

#include "support/MemoryConnection.h"
#include "utils/debugger/EventTestSupport.h"
#include "utils/debugger/InspectionTestSupport.h"

#include <tov/utils/ErrorType.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/System.h>
#include <tov/utils/debugger/impl/HTTPConnection.h>
#include <tov/utils/debugger/impl/HTTPLinkInput.h>
#include <tov/utils/debugger/impl/HTTPServer.h>
#include <tov/utils/debugger/impl/JsonHttpReply.h>
#include <tov/utils/debugger/impl/WarningLogger.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using tov::testing::LockedLogger;
using tov::testing::MemoryConnection;
using tov::testing::replyHead;
using tov::utils::debugger::impl::HTTPLinkInput;
using tov::utils::debugger::impl::JsonHttpReply;

namespace {

} // namespace

TEST(JsonHttpReply, WritesEveryStatusOfItsTableAnd500ForOtherIndices)
{
    const char* expected[] = {
        "200 OK",        "201 Created",   "204 No Content",         "400 Bad Request",           "401 Unauthorized",
        "403 Forbidden", "404 Not Found", "405 Method Not Allowed", "500 Internal Server Error", "501 Not Implemented"};
    for (unsigned int index : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 0xFFFFFFFFu}) {
        MemoryConnection connection("GET", "/");
        JsonHttpReply(connection, nullptr).sendStatus(index);
        EXPECT_EQ(replyHead(expected[index < 10 ? index : 8], "text", 0), connection.written) << index;
    }
}

TEST(JsonHttpReply, SendsWhatWasBuiltAsJsonAndSendsItAgainOnASecondStatus)
{
    MemoryConnection connection("GET", "/");
    JsonHttpReply reply(connection, nullptr);
    tov::utils::AbstractObjectBuilder& builder = reply.getObjectBuilder();
    builder.begin();
    builder.beginObject();
    builder.objectChild("speed");
    builder.integer(3);
    builder.endObject();
    builder.end();
    reply.sendStatus(JsonHttpReply::Ok);
    reply.sendStatus(JsonHttpReply::NoContent);
    const std::string body = "{\"speed\":3}";
    EXPECT_EQ(replyHead("200 OK", "json", 11) + body + replyHead("204 No Content", "json", 11) + body,
              connection.written);
}

TEST(HTTPLinkInput, ReadsTheBodyUpToItsMaximumAndReportsABrokenLink)
{
    LockedLogger log;
    MemoryConnection connection("POST", "/", "", "0123456789");
    HTTPLinkInput input(connection, 10);
    EXPECT_TRUE(input.isReadable() && !input.isWritable() && !input.write("x", 1, &log));
    char buffer[8];
    unsigned int size = sizeof(buffer);
    EXPECT_TRUE(input.read(buffer, size, &log) && size == 8);
    EXPECT_TRUE(input.read(buffer, size, &log) && size == 2);
    EXPECT_FALSE(input.read(buffer, size, &log)); // the end
    EXPECT_EQ(0u, size);
    EXPECT_TRUE(log.getMessages().empty());

    MemoryConnection longer("POST", "/", "", "0123456789");
    HTTPLinkInput bounded(longer, 9);
    size = sizeof(buffer);
    EXPECT_TRUE(bounded.read(buffer, size, &log));
    EXPECT_FALSE(bounded.read(buffer, size, &log));
    longer.broken = true;
    EXPECT_FALSE(bounded.read(buffer, size, &log));
    EXPECT_EQ(std::vector<std::string>(
                  {"e: The request body is longer than 9 bytes.", "e: Error reading from the underlying link."}),
              log.getMessages());
}

TEST(WarningLogger, PassesErrorsOnAsWarningsAndRemembersThem)
{
    LockedLogger wrapped(true, false, true);
    tov::utils::debugger::impl::WarningLogger relaxed(wrapped);
    EXPECT_TRUE(relaxed.isLoggingWarning() && !relaxed.isLoggingInfo() && relaxed.isLoggingTrace());
    relaxed.logError(tov::utils::error::invalidData, "f.cpp", 1, "bad key");
    relaxed.logTrace("f.cpp", 2, "step");
    relaxed.logInfo("f.cpp", 3, "dropped");
    EXPECT_TRUE(relaxed.hasErrors());
    EXPECT_FALSE(wrapped.hasErrors());
    EXPECT_EQ(std::vector<std::string>({"w: bad key", "t: step"}), wrapped.getMessages());
}

// Any client can send OPTIONS on a good path: it gets its answer and nothing else, and no assertion.
class RequestHandlerTest : public tov::testing::StartedLibrary {
protected:
    void SetUp() override
    {
        StartedLibrary::SetUp();
        tov::utils::Facilities::instance().setLogger(log);
    }
    std::string handle(const char* method, const char* path, const char* query)
    {
        MemoryConnection connection(method, path, query);
        tov::utils::debugger::impl::HTTPServer::handleRequest(
            tov::utils::Facilities::instance().getInspectionFramework(), connection);
        return connection.written;
    }

    LockedLogger log;
};

TEST_F(RequestHandlerTest, OptionsIsAnsweredOnceOnAGoodPathAndTwiceOnABadOne)
{
    const std::string options = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nAllow: GET,OPTIONS,POST,DELETE\r\n\r\n";
    EXPECT_EQ(options, handle("OPTIONS", "/api/world", "x=1"));
    EXPECT_EQ(options, handle("OPTIONS", "", ""));
    EXPECT_EQ(options + replyHead("204 No Content", "text", 0), handle("OPTIONS", "/elsewhere", ""));
    EXPECT_EQ(options + replyHead("400 Bad Request", "text", 0), handle("OPTIONS", "//api", ""));
}
