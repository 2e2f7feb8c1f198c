#pragma once
// Engines and a fixture for tests of the inspection framework: the library is initialized around each
// test, with a LockedLogger in force, and the engines that a test registers are unregistered again.

#include "support/LockedLogger.h"
#include "support/RawHttpClient.h"

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/System.h>
#include <tov/utils/debugger/All.h>

#include "support/MemoryStream.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tov {
namespace testing {

// Answers every operation with a fixed status and, for Ok, {"engine":<path>,"rest":<what it got>};
// keeps what it was called with.
class ScriptedEngine : public utils::debugger::AbstractEngine {
public:
    struct Call {
        char operation;   // 'r', 'c' or 'd'
        std::string rest;
        std::string query;   // the query object as JSON, "" for a null pointer
    };

    explicit ScriptedEngine(const char* path, bool enabled = true,
                            utils::debugger::resources::Status status = utils::debugger::resources::Ok)
        : AbstractEngine(path, enabled), status(status)
    {
    }

    utils::debugger::resources::Status retrieveResource(const char* path, unsigned int length,
                                                        const utils::DynamicObject* query,
                                                        utils::AbstractObjectBuilder& builder) const override
    {
        return const_cast<ScriptedEngine*>(this)->serve('r', path, length, query, builder);
    }
    utils::debugger::resources::Status createResource(const char* path, unsigned int length,
                                                      const utils::DynamicObject* query,
                                                      utils::AbstractObjectBuilder& builder) override
    {
        return serve('c', path, length, query, builder);
    }
    utils::debugger::resources::Status deleteResource(const char* path, unsigned int length,
                                                      const utils::DynamicObject* query,
                                                      utils::AbstractObjectBuilder& builder) override
    {
        return serve('d', path, length, query, builder);
    }

    std::vector<Call> getCalls() const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return calls;
    }
    Call lastCall() const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return calls.empty() ? Call{0, "", ""} : calls.back();
    }

    std::atomic<utils::debugger::resources::Status> status;
    std::atomic<int> enables{0};
    std::atomic<int> disables{0};

protected:
    void doEnable(bool& enabled) override
    {
        ++enables;
        AbstractEngine::doEnable(enabled);
    }
    void doDisable(bool& enabled) override
    {
        ++disables;
        AbstractEngine::doDisable(enabled);
    }

private:
    utils::debugger::resources::Status serve(char operation, const char* path, unsigned int length,
                                             const utils::DynamicObject* query, utils::AbstractObjectBuilder& builder)
    {
        std::string queryText;
        if (query != nullptr) {
            MemoryStream stream;
            utils::serializeDynamicObjectToJson(*query, stream, nullptr);
            queryText = stream.getText();
        }
        {
            std::lock_guard<std::mutex> guard(mutex);
            calls.push_back(Call{operation, std::string(path, length), queryText});
        }
        const utils::debugger::resources::Status answer = status;
        if (answer == utils::debugger::resources::Ok) {
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
    std::vector<Call> calls;
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
        for (utils::debugger::AbstractEngine* engine : registered) {
            framework().unregisterEngine(engine->getPath());
        }
        utils::Facilities::instance().clearLogger();
        utils::terminate(nullptr);
    }

    static utils::debugger::InspectionFramework& framework()
    {
        return utils::Facilities::instance().getInspectionFramework();
    }

    // A registered engine that lives as long as the fixture, past the tear-down that unregisters it.
    ScriptedEngine& addEngine(const char* path, bool enabled = true,
                              utils::debugger::resources::Status status = utils::debugger::resources::Ok)
    {
        engines.push_back(std::make_unique<ScriptedEngine>(path, enabled, status));
        EXPECT_TRUE(framework().registerEngine(*engines.back()));
        registered.push_back(engines.back().get());
        return *engines.back();
    }

    LockedLogger log;
    std::vector<std::unique_ptr<ScriptedEngine>> engines;
    std::vector<utils::debugger::AbstractEngine*> registered;
};

// Starts the server on a free loopback port before each test.
class InspectionHttpTest : public InspectionTest {
protected:
    void SetUp() override
    {
        InspectionTest::SetUp();
        // Another process may take the port between the probe and the start: a few tries.
        for (int attempt = 0; attempt < 5 && !framework().isHttpStarted(); ++attempt) {
            port = findFreePort();
            framework().startHttp("127.0.0.1", port);
        }
        ASSERT_TRUE(framework().isHttpStarted());
        log.clear();
    }

    std::string exchange(const std::string& request, int timeoutMilliseconds = 10000)
    {
        return RawHttpClient::exchange(port, request, timeoutMilliseconds);
    }
    std::vector<HttpReply> replies(const std::string& request)
    {
        return RawHttpClient::parseReplies(exchange(request));
    }
    // One request line with a blank Host header, and a body with its Content-Length when given.
    static std::string request(const std::string& method, const std::string& target, const std::string& body = "")
    {
        std::string text = method + " " + target + " HTTP/1.1\r\nHost: test\r\n";
        if (!body.empty()) {
            text += "Content-Length: " + std::to_string(body.size()) + "\r\n";
        }
        return text + "\r\n" + body;
    }

    unsigned int port = 0;
};

} // namespace testing
} // namespace tov
