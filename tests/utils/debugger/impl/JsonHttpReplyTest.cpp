#include "support/AssertionGuard.h"
#include "support/LockedLogger.h"
#include "support/MemoryHttpConnection.h"
#include "support/RawHttpClient.h"

#include <tov/utils/ErrorType.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/System.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/impl/HTTPLinkInput.h>
#include <tov/utils/debugger/impl/HTTPServer.h>
#include <tov/utils/debugger/impl/JsonHttpReply.h>
#include <tov/utils/debugger/impl/WarningLogger.h>

#include <gtest/gtest.h>

using tov::testing::LockedLogger;
using tov::testing::MemoryHttpConnection;
using tov::utils::debugger::impl::HTTPLinkInput;
using tov::utils::debugger::impl::JsonHttpReply;
using tov::utils::debugger::impl::WarningLogger;

namespace {

std::string head(const char* status, const char* type, unsigned int length)
{
    return std::string("HTTP/1.1 ") + status + "\r\nContent-Type: application/" + type +
           "; charset=utf-8\r\nContent-Length: " + std::to_string(length) +
           "\r\nConnection: close\r\nAccess-Control-Allow-Origin: *\r\n\r\n";
}

} // namespace

TEST(JsonHttpReply, WritesTheHeadOfEveryStatusOfTheTableAnd500ForOthers)
{
    const char* expected[] = {"200 OK",           "201 Created",   "204 No Content",       "400 Bad Request",
                              "401 Unauthorized", "403 Forbidden", "404 Not Found",        "405 Method Not Allowed",
                              "500 Internal Server Error",         "501 Not Implemented",
                              "500 Internal Server Error",         "500 Internal Server Error"};
    const unsigned int indices[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0xFFFFFFFFu};
    for (unsigned int i = 0; i < 12; ++i) {
        MemoryHttpConnection connection("GET", "/");
        JsonHttpReply reply(connection, nullptr);
        reply.sendStatus(indices[i]);
        EXPECT_EQ(head(expected[i], "text", 0), connection.getWritten()) << indices[i];
    }
}

TEST(JsonHttpReply, SendsWhatWasBuiltAsJsonAndKeepsItForTheNextSend)
{
    MemoryHttpConnection connection("GET", "/");
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
    EXPECT_EQ(head("200 OK", "json", 11) + body + head("204 No Content", "json", 11) + body, connection.getWritten());
}

TEST(JsonHttpReply, ItsBufferCanOnlyBeWritten)
{
    LockedLogger log;
    JsonHttpReply::Buffer buffer;
    EXPECT_TRUE(buffer.isWritable());
    EXPECT_FALSE(buffer.isReadable());
    char bytes[4];
    unsigned int size = sizeof(bytes);
    EXPECT_FALSE(buffer.read(bytes, size, &log));
    EXPECT_TRUE(buffer.write("ab", 2, &log));
    EXPECT_EQ("ab", std::string(buffer.getText().c_str()));
    EXPECT_EQ(std::vector<std::string>{"e: Not readable."}, log.getMessages());
}

TEST(HTTPLinkInput, ReadsTheBodyUntilItsEndAndReportsABrokenLink)
{
    LockedLogger log;
    MemoryHttpConnection connection("POST", "/", "", "0123456789");
    HTTPLinkInput input(connection, 100);
    EXPECT_TRUE(input.isReadable());
    EXPECT_FALSE(input.isWritable());
    EXPECT_FALSE(input.write("x", 1, &log));
    char buffer[8];
    unsigned int size = sizeof(buffer);
    EXPECT_TRUE(input.read(buffer, size, &log));
    EXPECT_EQ(8u, size);
    size = sizeof(buffer);
    EXPECT_TRUE(input.read(buffer, size, &log));
    EXPECT_EQ("89", std::string(buffer, size));
    size = sizeof(buffer);
    EXPECT_FALSE(input.read(buffer, size, &log));
    EXPECT_EQ(0u, size);
    EXPECT_TRUE(log.getMessages().empty());
    connection.failReads = true;
    size = sizeof(buffer);
    EXPECT_FALSE(input.read(buffer, size, &log));
    EXPECT_EQ(std::vector<std::string>{"e: Error reading from the underlying link."}, log.getMessages());
}

TEST(HTTPLinkInput, RefusesToReadPastItsMaximumSize)
{
    LockedLogger log;
    MemoryHttpConnection connection("POST", "/", "", "0123456789");
    HTTPLinkInput input(connection, 9);
    char buffer[8];
    unsigned int size = sizeof(buffer);
    EXPECT_TRUE(input.read(buffer, size, &log));
    size = sizeof(buffer);
    EXPECT_FALSE(input.read(buffer, size, &log));
    EXPECT_EQ(std::vector<std::string>{"e: The request body is longer than 9 bytes."}, log.getMessages());

    MemoryHttpConnection exact("POST", "/", "", "01234567");
    HTTPLinkInput whole(exact, 8);
    size = sizeof(buffer);
    EXPECT_TRUE(whole.read(buffer, size, &log));
    size = sizeof(buffer);
    EXPECT_FALSE(whole.read(buffer, size, &log));
    EXPECT_EQ(1u, log.getMessages().size());
}

TEST(WarningLogger, PassesErrorsOnAsWarningsAndRemembersThem)
{
    LockedLogger wrapped(true, false, true);
    WarningLogger relaxed(wrapped);
    EXPECT_TRUE(relaxed.isLoggingWarning());
    EXPECT_FALSE(relaxed.isLoggingInfo());
    EXPECT_TRUE(relaxed.isLoggingTrace());
    relaxed.logError(tov::utils::error::invalidData, "f.cpp", 1, "bad key");
    relaxed.logTrace("f.cpp", 2, "step");
    relaxed.logInfo("f.cpp", 3, "dropped");
    relaxed.logWarning("f.cpp", 4, "odd");
    EXPECT_TRUE(relaxed.hasErrors());
    EXPECT_FALSE(wrapped.hasErrors());
    const std::vector<std::string> expected = {"w: bad key", "t: step", "w: odd"};
    EXPECT_EQ(expected, wrapped.getMessages());

    LockedLogger silent(false, false, false);
    WarningLogger quiet(silent);
    quiet.logError(tov::utils::error::invalidData, "f.cpp", 1, "bad key");
    EXPECT_TRUE(quiet.hasErrors());
    EXPECT_TRUE(silent.getMessages().empty());
}

// OPTIONS needs no engine: its answer is written before the path is looked at. On a good path nothing
// follows it, and no assertion fires, since any client can send it.
class RequestHandlerTest : public tov::testing::AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        ASSERT_TRUE(tov::utils::initialize(nullptr));
        tov::utils::Facilities::instance().setLogger(log);
    }
    void TearDown() override
    {
        tov::utils::Facilities::instance().clearLogger();
        tov::utils::terminate(nullptr);
        AssertionTest::TearDown();
    }
    std::string handle(const char* method, const char* path, const char* query)
    {
        MemoryHttpConnection connection(method, path, query);
        tov::utils::debugger::impl::HTTPServer::handleRequest(
            tov::utils::Facilities::instance().getInspectionFramework(), connection);
        return connection.getWritten();
    }

    LockedLogger log;
};

TEST_F(RequestHandlerTest, OptionsIsAnsweredOnceOnAGoodPathAndTwiceOnABadOne)
{
    const std::string options = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nAllow: GET,OPTIONS,POST,DELETE\r\n\r\n";
    EXPECT_EQ(options, handle("OPTIONS", "/api/world", "x=1"));
    EXPECT_EQ(options, handle("OPTIONS", "", ""));
    EXPECT_EQ(options + head("204 No Content", "text", 0), handle("OPTIONS", "/elsewhere", ""));
    EXPECT_EQ(options + head("204 No Content", "text", 0), handle("OPTIONS", "/api", "a=%zz"));
    EXPECT_EQ(options + head("400 Bad Request", "text", 0), handle("OPTIONS", "//api", ""));
}
