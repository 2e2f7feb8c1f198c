#include "DebuggerTestSupport.h"

#include "support/AssertionGuard.h"

#include <future>

namespace tov {
namespace testing {
namespace {

using debugger::invalidEntity;

TEST_F(DebuggerTest, EntitiesComeWithABottomFrameAndAnEventAndGoOnlyWithTheirFramesGone)
{
    RecordingListener registrations(false);
    ASSERT_NE(0u, framework().subscribe<debugger::EntityRegistrationRequest>(registrations));
    ASSERT_NE(0u, framework().subscribe<debugger::EntityUnregistrationRequest>(registrations));
    registerEntities({0, 1, 2});
    registerEntities({1, 2}); // all known: nothing happens
    EXPECT_EQ(3u, debugger().countEntities());
    EXPECT_EQ("tov:simulation", describeStack(debugger(), 1));
    // One new id brings the whole batch in again, each id with another bottom frame.
    registerEntities({2, 3});
    EXPECT_EQ(
        (std::vector<unsigned int>{0, 1, 2, 2, 3}),
        std::vector<unsigned int>(debugger().getEntities(), debugger().getEntities() + debugger().countEntities()));
    EXPECT_EQ("tov:simulation tov:simulation", describeStack(debugger(), 2));
    EXPECT_EQ((std::vector<std::string>{"registration 0", "registration 1", "registration 2", "registration 2",
                                        "registration 3"}),
              registrations.take());

    {
        const utils::AssertionFailedFunction previous = utils::getAssertionFailedFunction();
        utils::setAssertionFailedFunction(utils::throwOnAssertionFailed);
        EXPECT_ASSERTION(simulation.onEntitiesUnregistration(std::vector<unsigned int>{2}.data(), 1),
                         "Not all contexts have been removed.");
        EXPECT_ASSERTION(simulation.push(9, "tov:a"), "Entity '9' is not registered on the debugger.");
        utils::setAssertionFailedFunction(previous);
    }
    simulation.pop(2);
    const unsigned int leaving[] = {9, 2, 3};
    simulation.onEntitiesUnregistration(leaving, 3);
    EXPECT_EQ(
        (std::vector<unsigned int>{0, 1}),
        std::vector<unsigned int>(debugger().getEntities(), debugger().getEntities() + debugger().countEntities()));
    EXPECT_EQ((std::vector<std::string>{"unregistration 2", "unregistration 3"}), registrations.take());
    EXPECT_EQ(0u, debugger().countContexts(2)); // the stack stays, empty
}

TEST_F(DebuggerTest, TheTreeShowsEntitiesTheirStacksAndEachFramesContent)
{
    registerEntities({0, 1, 2});
    simulation.push(1, "tov:agents/forager.behavior#seek");
    simulation.push(1, "tov:b");
    const std::string stack = "[{\"index\":0,\"location\":\"tov:simulation\"},"
                              "{\"index\":1,\"location\":\"tov:agents/forager.behavior#seek\"},"
                              "{\"index\":2,\"location\":\"tov:b\"}]";
    const std::pair<const char*, std::string> cases[] = {
        {"debug", "{\"name\":\"default\",\"description\":\"\"}"},
        {"debug/", "[{\"index\":0},{\"index\":1},{\"index\":2}]"},
        {"debug/ent", "[{\"index\":0},{\"index\":1},{\"index\":2}]"},
        {"debug/entities/1/contexts", stack},
        {"debug/entities/1", "{\"contexts\":" + stack + "}"},
        {"debug/entities/1/c/2", "{\"at\":\"tov:b\"}"},
        {"debug/entities/1/contexts/0", "{}"},
        {"debug/entities/1/contexts/3", "404"},
        {"debug/entities/3", "404"},
        {"debug/entities/1x", "404"},
        {"debug/entitiesx", "404"},
        {"debug/suspend", "{\"suspended\":false,\"entity\":4294967295}"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.second, get(c.first)) << c.first;
    }
    EXPECT_EQ(204, remove("debug/entities"));

    // An invalidated frame shows nothing; cleaning hands the engine's frames back and keeps the bottom one.
    simulation.facade->invalidateContexts(simulation);
    EXPECT_EQ("", get("debug/entities/1/contexts/2"));
    utils::Vector<debugger::AbstractContext*> frames = simulation.facade->cleanRelatedContexts(simulation);
    EXPECT_EQ(2u, frames.size());
    for (debugger::AbstractContext* frame : frames) {
        TOV_DELETE(frame);
    }
    EXPECT_EQ("tov:simulation", describeStack(debugger(), 1));

    log.clear();
    EXPECT_EQ(nullptr, debugger().getContext(7, 0, &log));
    EXPECT_EQ(nullptr, debugger().getContext(1, 5, &log));
    EXPECT_EQ(nullptr, simulation.facade->topContext(7, &log));
    EXPECT_EQ(
        (std::vector<std::string>{"e: Entity '7' is not registered on the debugger.", "e: Index '5' is out of bound.",
                                  "e: Entity '7' is not registered on the debugger."}),
        log.getMessages());
    log.resetErrors();
}

// Commands go through the API or over HTTP; either way the entity stops at the frame change it asked for.
class SteppingTest : public DebuggerTest, public ::testing::WithParamInterface<bool> {
protected:
    bool command(const std::string& name, const std::string& body = "")
    {
        if (GetParam()) {
            return post("debug/" + name, body) == 200;
        }
        if (name == "suspend") {
            return body.empty() ? debugger().suspend() : debugger().suspendEntity(1);
        }
        return name == "stepin"     ? debugger().stepIn()
               : name == "stepover" ? debugger().stepOver()
               : name == "stepout"  ? debugger().stepOut()
                                    : debugger().resume();
    }
};

TEST_P(SteppingTest, StepsInOverAndOutOnAStackOfThreeFrames)
{
    registerEntities({0, 1});
    EXPECT_FALSE(command("stepin")); // running: nothing to step
    EXPECT_FALSE(command("resume"));
    ASSERT_TRUE(command("suspend", "{\"entity\":1}"));
    simulation.run(1, {push("tov:a"), push("tov:b"), push("tov:x"), pop(), pop(), push("tov:c"), pop(), pop()});
    const std::string bottom = "tov:simulation";
    ASSERT_TRUE(stopsAt(1, bottom + " tov:a"));
    EXPECT_FALSE(command("suspend")); // suspended already
    EXPECT_EQ(1u, debugger().getSuspendedEntity());
    ASSERT_TRUE(command("stepin"));
    ASSERT_TRUE(stopsAt(1, bottom + " tov:a tov:b"));
    ASSERT_TRUE(command("stepover")); // x comes and goes: the stop is back at b
    ASSERT_TRUE(stopsAt(1, bottom + " tov:a tov:b"));
    ASSERT_TRUE(command("stepover")); // b returns: the stop is in its caller
    ASSERT_TRUE(stopsAt(1, bottom + " tov:a"));
    ASSERT_TRUE(command("stepin"));
    ASSERT_TRUE(stopsAt(1, bottom + " tov:a tov:c"));
    ASSERT_TRUE(command("stepout"));
    ASSERT_TRUE(stopsAt(1, bottom + " tov:a"));
    EXPECT_TRUE(command("resume"));
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 1; }));
    EXPECT_EQ(6u, listener.take().size()); // one suspension event a stop
    // Running again, the last stopped entity still shows in the tree but not through the API.
    EXPECT_EQ(invalidEntity, debugger().getSuspendedEntity());
    EXPECT_EQ("{\"suspended\":false,\"entity\":1}", get("debug/resume"));
}

INSTANTIATE_TEST_SUITE_P(ThroughApiAndHttp, SteppingTest, ::testing::Values(false, true));

TEST_F(DebuggerTest, SuspendingAllStopsEveryThreadAndOneResumeLetsThemAllGo)
{
    registerEntities({0, 1});
    ASSERT_TRUE(debugger().suspend());
    simulation.run(0, {push("tov:a"), pop()});
    simulation.run(1, {push("tov:b"), pop()});
    std::vector<std::string> stops;
    ASSERT_TRUE(waitFor([&] {
        for (const std::string& stop : listener.take()) {
            stops.push_back(stop);
        }
        return stops.size() == 2;
    }));
    // Each event comes just before its thread enters the gate. Nothing outside the gate shows a thread
    // inside it, so this pause gives them the time to get there; a thread still on its way would pass
    // the opened gate anyway, so the pause makes the test stronger and never makes it fail.
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_TRUE(debugger().resume());
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 2; }));
    // Frames of an invalidated engine stop nothing, even with everything armed.
    simulation.facade->invalidateContexts(simulation);
    ASSERT_TRUE(debugger().suspend());
    simulation.run(0, {push("tov:a"), pop()});
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 3; }));
    EXPECT_FALSE(debugger().isSuspended());
    simulation.facade->cleanRelatedContexts(simulation);
}

// A registration holds the state lock across its pushes: a thread stopped there would hold it while
// suspended, and no client could be answered or resume it. Its frames never stop.
TEST_F(DebuggerTest, RegisteringAndUnregisteringWhileEverythingIsArmedNeverStops)
{
    registerEntities({0});
    ASSERT_TRUE(debugger().suspend());
    std::future<void> registering = std::async(std::launch::async, [this] {
        registerEntities({1});
        const unsigned int leaving = 1;
        simulation.onEntitiesUnregistration(&leaving, 1);
    });
    EXPECT_EQ(std::future_status::ready, registering.wait_for(std::chrono::seconds(10)));
    EXPECT_FALSE(debugger().isSuspended());
    EXPECT_EQ("{\"suspended\":false,\"entity\":4294967295}", get("debug/suspend"));
    debugger().resume();
}

TEST_F(DebuggerTest, DisablingTheDebuggerReleasesTheSimulation)
{
    registerEntities({0});
    framework().enableEngine("debug");
    ASSERT_TRUE(debugger().suspend());
    simulation.run(0, {push("tov:a"), pop()});
    ASSERT_TRUE(stopsAt(0, "tov:simulation tov:a"));
    framework().disableEngine("debug");
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 1; }));
}

TEST_F(DebuggerTest, HeldControlsKeepTheGateAsItIs)
{
    debugger::ExecutionController& gate = debugger().getExecutionController();
    std::atomic<bool> resumed{false};
    std::thread resumer;
    {
        debugger::ExecutionController::ScopedControlLocker hold(gate);
        resumer = std::thread([&] {
            gate.resume();
            resumed = true;
        });
        // What is checked is that nothing happens: a window of time is the only way to look.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_FALSE(resumed);
        EXPECT_FALSE(gate.isSuspended()); // still answers
    }
    resumer.join();
    EXPECT_TRUE(resumed);
}

// Breakpoints fire at locations the engine passes; the filters narrow them and the events show them.
TEST_F(DebuggerTest, BreakpointsStopAtTheirLocationWithTheirFiltersAndQueueEvents)
{
    registerEntities({0, 1});
    const std::string subscribed =
        postBody("events/subscriptions",
                 "{\"type\":\"breakpoint\",\"filters\":{\"location\":\"tov:b\",\"hitcount\":2,\"unknown\":1}}");
    ASSERT_EQ(0u, subscribed.find("{\"requestId\":"));
    const std::string requestId = subscribed.substr(13, subscribed.size() - 14);
    simulation.run(0, {pass("tov:a"), pass("tov:b"), pass("tov:a"), pass("tov:b")});
    ASSERT_TRUE(waitFor([] { return debugger().isSuspended(); }));
    EXPECT_EQ(0u, debugger().getSuspendedEntity());
    EXPECT_EQ("[0]", get("events"));
    EXPECT_EQ("{\"id\":0,\"type\":\"breakpoint\",\"requestId\":" + requestId + ",\"entity\":0,\"location\":\"tov:b\"}",
              get("events/0"));
    EXPECT_EQ(200, post("debug/resume"));
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 1; }));

    // Only entity 1 breaks under an entities filter made in code.
    ASSERT_EQ(200, remove("events/subscriptions"));
    const unsigned int one = 1;
    debugger::AbstractEventFilter* filters[] = {TOV_NEW debugger::EntitiesFilter(&one, 1)};
    RecordingListener breakpoints(false);
    ASSERT_NE(0u, framework().subscribe<debugger::BreakpointRequest>(breakpoints, filters, 1));
    simulation.run(0, {pass("tov:a")});
    EXPECT_TRUE(waitFor([this] { return simulation.finished == 2; }));
    simulation.run(1, {pass("tov:a")});
    ASSERT_TRUE(waitFor([] { return debugger().isSuspended(); }));
    EXPECT_EQ((std::vector<std::string>{"breakpoint 1 tov:a"}), breakpoints.take());
    EXPECT_TRUE(debugger().resume());
}

// The default assertion function stays in place: nothing a client sends may end the host.
TEST_F(DebuggerTest, ClientInputThatWouldAssertIsTakenAsNoValue)
{
    // A location that is no Uri subscribes without that filter.
    EXPECT_EQ(0u, postBody("events/s", "{\"type\":\"breakpoint\",\"filters\":{\"location\":\"::no uri\"}}")
                      .find("{\"requestId\":"));
    EXPECT_EQ(200, post("events/s", "{\"type\":\"breakpoint\",\"filters\":{\"location\":7,\"entities\":[1,2]}}"));
    // Null reads as compatible with a string and a number, but reading it asserts.
    EXPECT_EQ(400, post("events/s", "{\"type\":null}"));
    EXPECT_EQ(200, post("debug/suspend", "{\"entity\":null}")); // as without a body
    EXPECT_FALSE(debugger().resume());                          // armed, but nothing stopped
}

TEST_F(DebuggerTest, EveryKindOfEventIsQueuedReadAndDeleted)
{
    for (const char* type :
         {"initialization", "registration", "unregistration", "suspension", "termination", "disconnection"}) {
        EXPECT_EQ(200, post("events/subscriptions", std::string("{\"type\":\"") + type + "\"}")) << type;
    }
    registerEntities({5});
    simulation.onEntitiesUnregistration(std::vector<unsigned int>{5}.data(), 1);
    EXPECT_EQ("[0,1,2]", get("events"));
    const std::string first = get("events/abc"); // no number reads as 0
    EXPECT_EQ(0u, first.find("{\"id\":0,\"type\":\"initialization\",\"requestId\":")) << first;
    EXPECT_EQ(std::string::npos, first.find("entity"));
    EXPECT_NE(std::string::npos, get("events/1").find("\"type\":\"registration\",\"requestId\":"));
    EXPECT_NE(std::string::npos, get("events/2").find(",\"entity\":5}"));
    EXPECT_EQ(200, remove("events/1"));
    EXPECT_EQ("404", get("events/1"));
    EXPECT_EQ(204, remove("events/1"));
    EXPECT_EQ("[0,2]", get("events"));
    EXPECT_EQ(200, remove("events"));
    EXPECT_EQ("[]", get("events"));
    EXPECT_EQ(200, remove("events")); // empty already

    EXPECT_EQ(400, post("events/subscriptions", "{\"type\":\"nothing\"}"));
    EXPECT_EQ(400, post("events/subscriptions"));
    EXPECT_EQ(204, post("events/a/b", "{\"type\":\"termination\"}"));
    EXPECT_EQ(204, post("events", "{\"type\":\"termination\"}"));
    EXPECT_EQ("404", get("events/subscriptions"));
    EXPECT_EQ(204, remove("events/subscriptions/999"));
    const std::string handle = postBody("events/x", "{\"type\":\"termination\"}");
    EXPECT_EQ(200, remove("events/subscriptions/" + handle.substr(13, handle.size() - 14)));

    // A new run of the server starts a new queue.
    registerEntities({6});
    framework().shutdownHttp();
    ASSERT_TRUE(framework().startHttp("127.0.0.1", port));
    EXPECT_EQ("[]", get("events"));
    EXPECT_EQ(200, post("events/subscriptions", "{\"type\":\"initialization\"}"));
    EXPECT_EQ("[0]", get("events"));
}

} // namespace
} // namespace testing
} // namespace tov
