#pragma once
// What the event tests share: a listener that writes down what it is told, filters that count their
// own destruction, and a fixture that starts the library, whose type manager the registry asks.

#include <tov/utils/Memory.h>
#include <tov/utils/System.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventFilterVisitor.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/BreakpointRequest.h>
#include <tov/utils/debugger/LocationBreakpointVisitor.h>

#include "support/AssertionGuard.h"

#include <functional>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

namespace tov {
namespace testing {

// Records each call as "<operation> <requestId>[ <entity>[ <location>]]", without the request id where the
// ids are not the test's business; `onEvent`, when set, runs after the record, on the firing thread.
class RecordingListener : public utils::debugger::AbstractEventListener {
public:
    explicit RecordingListener(bool withRequestId = true) : withRequestId(withRequestId) {}
    void onInitialization(unsigned int requestId) override { record("initialization", requestId); }
    void onTermination(unsigned int requestId) override { record("termination", requestId); }
    void onSuspension(unsigned int requestId, unsigned int entity) override
    {
        record("suspension", requestId, &entity);
    }
    void onDisconnection(unsigned int requestId) override { record("disconnection", requestId); }
    void onRegistration(unsigned int requestId, unsigned int entity) override
    {
        record("registration", requestId, &entity);
    }
    void onUnregistration(unsigned int requestId, unsigned int entity) override
    {
        record("unregistration", requestId, &entity);
    }
    void onBreakpoint(unsigned int requestId, unsigned int entity, const utils::Uri& location) override
    {
        record("breakpoint", requestId, &entity, &location);
    }

    std::vector<std::string> events() const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return recorded;
    }
    void clear() { take(); }
    // The events recorded so far, which are forgotten.
    std::vector<std::string> take()
    {
        std::lock_guard<std::mutex> guard(mutex);
        std::vector<std::string> taken;
        taken.swap(recorded);
        return taken;
    }

    std::function<void(unsigned int requestId)> onEvent;

private:
    void record(const char* operation, unsigned int requestId, const unsigned int* entity = nullptr,
                const utils::Uri* location = nullptr)
    {
        std::ostringstream line;
        line << operation;
        if (withRequestId) {
            line << ' ' << requestId;
        }
        if (entity != nullptr) {
            line << ' ' << *entity;
        }
        if (location != nullptr) {
            line << ' ' << *location;
        }
        {
            std::lock_guard<std::mutex> guard(mutex);
            recorded.push_back(line.str());
        }
        if (onEvent) {
            onEvent(requestId);
        }
    }

    const bool withRequestId;
    mutable std::mutex mutex;
    std::vector<std::string> recorded;
};

// A filter of a class that no library visitor knows. It counts its destructions in `destroyed`.
class ForeignFilter : public utils::debugger::AbstractEventFilter {
public:
    explicit ForeignFilter(int* destroyed = nullptr) : destroyed(destroyed) {}
    ~ForeignFilter() override
    {
        if (destroyed != nullptr) {
            ++*destroyed;
        }
    }
    const utils::Uuid& getTypeId() const override
    {
        static const utils::Uuid id = utils::Uuid::create("5b1e0c7a-3d42-4f19-8a6e-2c9d7f1b4e30");
        return id;
    }
    void update() override { ++updates; }
    void accept(utils::debugger::AbstractEventFilterVisitor& visitor) const override { visitor.visit(*this); }

    int updates = 0;

private:
    int* destroyed;
};

// The library runs for each test, with assertions that throw.
class StartedLibrary : public AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        ASSERT_TRUE(utils::initialize(nullptr));
    }
    void TearDown() override
    {
        utils::terminate(nullptr);
        AssertionTest::TearDown();
    }
};

} // namespace testing
} // namespace tov
