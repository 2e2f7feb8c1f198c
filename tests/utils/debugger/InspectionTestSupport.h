#pragma once
// An engine and fixtures for tests of the inspection framework: the library is initialized around each
// test with a LockedLogger in force, and the engines a test adds are unregistered again.

#include "support/LockedLogger.h"
#include "support/MemoryText.h"
#include "support/RawHttpClient.h"

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/System.h>
#include <tov/utils/debugger/All.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace tov {
namespace testing {

namespace resources = utils::debugger::resources;

// The head the server writes before a body of `length` bytes.
inline std::string replyHead(const char* status, const char* type, std::size_t length)
{
    return std::string("HTTP/1.1 ") + status + "\r\nContent-Type: application/" + type +
           "; charset=utf-8\r\nContent-Length: " + std::to_string(length) +
           "\r\nConnection: close\r\nAccess-Control-Allow-Origin: *\r\n\r\n";
}

// Answers each operation with `status` and, for Ok, {"engine":<its path>,"rest":<the rest it got>}; keeps
// every call as "<r|c|d> <rest> <query as JSON>".
class ScriptedEngine : public utils::debugger::AbstractEngine {
public:
    ScriptedEngine(const char* path, bool enabled, resources::Status status)
        : AbstractEngine(path, enabled), status(status)
    {
    }

    resources::Status retrieveResource(const char* path, unsigned int length, const utils::DynamicObject* query,
                                       utils::AbstractObjectBuilder& builder) const override
    {
        return const_cast<ScriptedEngine*>(this)->serve('r', path, length, query, builder);
    }
    resources::Status createResource(const char* path, unsigned int length, const utils::DynamicObject* query,
                                     utils::AbstractObjectBuilder& builder) override
    {
        return serve('c', path, length, query, builder);
    }
    resources::Status deleteResource(const char* path, unsigned int length, const utils::DynamicObject* query,
                                     utils::AbstractObjectBuilder& builder) override
    {
        return serve('d', path, length, query, builder);
    }

    std::vector<std::string> getCalls() const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return calls;
    }

    std::atomic<resources::Status> status;
    std::atomic<int> enables{0};
    std::atomic<int> disables{0};

protected:
    void doEnable(bool& enabled) override { ++enables, enabled = true; }
    void doDisable(bool& enabled) override { ++disables, enabled = false; }

private:
    resources::Status serve(char operation, const char* path, unsigned int length, const utils::DynamicObject* query,
                            utils::AbstractObjectBuilder& builder)
    {
        tov::utils::MemoryInputOutput queryText;
        if (query != nullptr) {
            // A body that is a lone value is refused by the writer; the call records what was written.
            static_cast<void>(utils::serializeDynamicObjectToJson(*query, queryText, nullptr));
        }
        {
            std::lock_guard<std::mutex> guard(mutex);
            calls.push_back(std::string(1, operation) + " " + std::string(path, length) + " " + textOf(queryText));
        }
        const resources::Status answer = status;
        if (answer == resources::Ok) {
            builder.begin();
            builder.beginObject();
            builder.objectChild("engine");
            builder.string(getPath());
            builder.objectChild("rest");
            builder.string(path, length);
            builder.endObject();
            builder.end();
        }
        return answer;
    }

    mutable std::mutex mutex;
    std::vector<std::string> calls;
};

class InspectionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(utils::initialize(nullptr));
        utils::Facilities::instance().setLogger(log);
    }

    void TearDown() override
    {
        framework().shutdownHttp();
        for (const std::unique_ptr<ScriptedEngine>& engine : engines) {
            framework().unregisterEngine(engine->getPath()); // a warning for one unregistered already
        }
        utils::Facilities::instance().clearLogger();
        utils::terminate(nullptr);
    }

    static utils::debugger::InspectionFramework& framework()
    {
        return utils::Facilities::instance().getInspectionFramework();
    }

    // A registered engine that outlives the tear-down, which unregisters it.
    ScriptedEngine& addEngine(const char* path, bool enabled = true, resources::Status status = resources::Ok)
    {
        engines.push_back(std::make_unique<ScriptedEngine>(path, enabled, status));
        EXPECT_TRUE(framework().registerEngine(*engines.back()));
        return *engines.back();
    }

    // Starts the server on a free loopback port and gives that port; another process may take the port
    // between the probe and the start, so a few ports are tried.
    unsigned int startOnFreePort()
    {
        unsigned int port = 0;
        bool started = false;
        for (int attempt = 0; attempt < 5 && !started; ++attempt) {
            started = framework().startHttp("127.0.0.1", port = findFreePort());
        }
        EXPECT_TRUE(started);
        return port;
    }

    LockedLogger log;
    std::vector<std::unique_ptr<ScriptedEngine>> engines;
};

// The server runs on a free loopback port during each test.
class InspectionHttpTest : public InspectionTest {
protected:
    void SetUp() override
    {
        InspectionTest::SetUp();
        port = startOnFreePort();
        ASSERT_TRUE(framework().isHttpStarted());
        log.clear();
    }

    std::string exchange(const std::string& request) { return RawHttpClient::exchange(port, request); }
    std::vector<HttpReply> replies(const std::string& request)
    {
        return RawHttpClient::parseReplies(exchange(request));
    }
    std::vector<int> statuses(const std::string& request)
    {
        std::vector<int> codes;
        for (const HttpReply& reply : replies(request)) {
            codes.push_back(reply.status);
        }
        return codes;
    }
    // A request with a Host header, and the body with its Content-Length when there is one.
    static std::string request(const std::string& method, const std::string& target, const std::string& body = "")
    {
        return method + " " + target + " HTTP/1.1\r\nHost: test\r\n" +
               (body.empty() ? "" : "Content-Length: " + std::to_string(body.size()) + "\r\n") + "\r\n" + body;
    }

    unsigned int port = 0;
};

} // namespace testing
} // namespace tov
