#pragma once
// A simulated host for debugger tests: an engine whose entities run scripts of pushes and pops on threads
// of their own, frames at a location with some content, and bounded waits on the gate.

#include "EventTestSupport.h"
#include "InspectionTestSupport.h"
#include "support/BoundedWait.h"

#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace tov {
namespace testing {

namespace debugger = utils::debugger;

// A frame at `location` that shows {"at": location} until invalidated.
class Frame : public debugger::AbstractContext {
public:
    explicit Frame(const char* location) : location(utils::Uri::create(location)) { content.setString("at", location); }
    const utils::Uri& getLocation() const override { return location; }
    void invalidate() override { valid = false; }
    void accept(debugger::AbstractContextVisitor& visitor) const override
    {
        if (valid) {
            visitor.visit(content);
        }
    }

private:
    utils::Uri location;
    utils::DynamicObject content;
    bool valid = true;
};

class FrameFactory : public debugger::AbstractContextFactory {
public:
    explicit FrameFactory(const char* location) : location(location) {}
    debugger::AbstractContext* create() override { return TOV_NEW Frame(location.c_str()); }

private:
    std::string location;
};

// One step of an entity's script: push a frame at a location, pop the top one, or pass a location.
struct Step {
    enum Kind { push, pop, pass } kind;
    std::string location;
};
inline Step push(const char* location)
{
    return {Step::push, location};
}
inline Step pop()
{
    return {Step::pop, ""};
}
inline Step pass(const char* location)
{
    return {Step::pass, location};
}

// Keeps the facade it is given, and runs entities' scripts on threads of their own.
class SimulationEngine : public debugger::AbstractEngine {
public:
    explicit SimulationEngine(const char* path = "simulation") : AbstractEngine(path, true) {}
    ~SimulationEngine() override { join(); }

    void setDebuggerFacade(debugger::EngineDebuggerFacade& given) override
    {
        AbstractEngine::setDebuggerFacade(given);
        facade = &given;
    }

    void push(unsigned int entity, const char* location)
    {
        FrameFactory factory(location);
        facade->pushContext(*this, entity, factory);
    }
    void pop(unsigned int entity) { TOV_DELETE(facade->popContext(*this, entity)); }
    // Stops the calling thread when a breakpoint is hit.
    void pass(unsigned int entity, const char* location)
    {
        const utils::Uri at = utils::Uri::create(location);
        debugger::LocationBreakpointVisitor::fire(*facade, entity, at);
    }

    void run(unsigned int entity, const std::vector<Step>& script)
    {
        ++started;
        threads.emplace_back([this, entity, script] {
            for (const Step& step : script) {
                switch (step.kind) {
                case Step::push:
                    push(entity, step.location.c_str());
                    break;
                case Step::pop:
                    pop(entity);
                    break;
                case Step::pass:
                    pass(entity, step.location.c_str());
                    break;
                }
            }
            ++finished;
        });
    }
    void join()
    {
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
    }

    debugger::EngineDebuggerFacade* facade = nullptr;
    std::atomic<int> started{0};
    std::atomic<int> finished{0};

private:
    std::vector<std::thread> threads;
};

// The stack of an entity as the locations of its frames, bottom first: "tov:simulation tov:a".
inline std::string describeStack(const debugger::DebuggerFramework& debugger, unsigned int entity)
{
    std::string stack;
    for (unsigned int i = 0; i < debugger.countContexts(entity); ++i) {
        const debugger::AbstractContext* context = debugger.getContext(entity, i, nullptr);
        char* text = context->getLocation().computeString();
        stack += (stack.empty() ? "" : " ") + std::string(text);
        TOV_DELETE_ARRAY(text);
    }
    return stack;
}

// Registers a simulation engine, and in tear-down always lets the simulation go before its threads are
// joined, so that a failing test cannot leave a thread in the gate.
class DebuggerTest : public InspectionHttpTest {
protected:
    void SetUp() override
    {
        InspectionHttpTest::SetUp();
        ASSERT_TRUE(framework().registerEngine(simulation));
        ASSERT_NE(0u, framework().subscribe<debugger::TargetSuspendRequest>(listener));
    }

    void TearDown() override
    {
        // A thread may reach the gate again after a resume, at a breakpoint of its own.
        waitFor([this] {
            debugger().resume();
            return simulation.finished == simulation.started;
        });
        simulation.join();
        framework().unregisterEngine(simulation.getPath());
        InspectionHttpTest::TearDown();
    }

    static debugger::DebuggerFramework& debugger() { return framework().getDebugger(); }

    void registerEntities(std::initializer_list<unsigned int> ids)
    {
        const std::vector<unsigned int> list(ids);
        simulation.onEntitiesRegistration(list.data(), static_cast<unsigned int>(list.size()));
    }

    // Waits for the gate to close, then for `entity`'s stack to read `stack`.
    ::testing::AssertionResult stopsAt(unsigned int entity, const std::string& stack)
    {
        if (!waitFor([] { return debugger().isSuspended(); })) {
            return ::testing::AssertionFailure() << "never suspended";
        }
        // The stack settles before the thread reaches the gate.
        const std::string seen = describeStack(debugger(), entity);
        if (seen != stack) {
            return ::testing::AssertionFailure() << "stopped at " << seen;
        }
        return ::testing::AssertionSuccess();
    }

    // The body of GET on a path under /api/, "" with the status when it is not 200.
    std::string get(const std::string& path)
    {
        const std::vector<HttpReply> answers = replies(request("GET", "/api/" + path));
        if (answers.empty()) {
            return "no answer";
        }
        return answers[0].status == 200 ? answers[0].body : std::to_string(answers[0].status);
    }
    int post(const std::string& path, const std::string& body = "")
    {
        const std::vector<HttpReply> answers = replies(request("POST", "/api/" + path, body));
        return answers.empty() ? 0 : answers[0].status;
    }
    std::string postBody(const std::string& path, const std::string& body)
    {
        const std::vector<HttpReply> answers = replies(request("POST", "/api/" + path, body));
        return answers.empty() ? "no answer" : answers[0].body;
    }
    int remove(const std::string& path)
    {
        const std::vector<HttpReply> answers = replies(request("DELETE", "/api/" + path));
        return answers.empty() ? 0 : answers[0].status;
    }

    SimulationEngine simulation;
    RecordingListener listener{false};
};

} // namespace testing
} // namespace tov
