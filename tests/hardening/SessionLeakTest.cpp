// A whole session of a host's kind of work, from initialize to terminate, must give every block of the
// memory service back: entities and frames, stops and steps, subscriptions and events, every kind of
// HTTP request, JSON and saved-text round trips, random streams and their saved forms.

#include "utils/debugger/DebuggerTestSupport.h"

#include <tov/allocator/Allocator.h>
#include <tov/utils/DynamicObjectSerialization.h>
#include <tov/utils/RandomManager.h>
#include <tov/utils/RandomManagerSerialization.h>

namespace tov {
namespace testing {
namespace {

using utils::Facilities;

std::string exchangeBody(unsigned int port, const std::string& method, const std::string& path,
                         const std::string& body = "")
{
    const std::string request = method + " /api/" + path + " HTTP/1.1\r\nHost: test\r\n" +
                                (body.empty() ? "" : "Content-Length: " + std::to_string(body.size()) + "\r\n") +
                                "\r\n" + body;
    const std::vector<HttpReply> replies = RawHttpClient::parseReplies(RawHttpClient::exchange(port, request));
    return replies.empty() ? "" : std::to_string(replies[0].status) + " " + replies[0].body;
}

void runSimulationUnderTheInspector(LockedLogger& log)
{
    debugger::InspectionFramework& framework = Facilities::instance().getInspectionFramework();
    SimulationEngine simulation;
    ASSERT_TRUE(framework.registerEngine(simulation));
    unsigned int port = 0;
    bool started = false;
    for (int attempt = 0; attempt < 5 && !started; ++attempt) {
        port = findFreePort();
        started = framework.startHttp("127.0.0.1", port);
    }
    ASSERT_TRUE(framework.isHttpStarted());
    for (const char* type : {"initialization", "registration", "unregistration", "suspension", "termination"}) {
        EXPECT_EQ(0u, exchangeBody(port, "POST", "events/subscriptions", std::string("{\"type\":\"") + type + "\"}")
                          .find("200 {\"requestId\":"));
    }
    EXPECT_EQ(0u, exchangeBody(port, "POST", "events/s",
                               "{\"type\":\"breakpoint\",\"filters\":{\"location\":\"tov:b\",\"entities\":[0]}}")
                      .find("200 "));
    const unsigned int entities[] = {0, 1, 2};
    simulation.onEntitiesRegistration(entities, 3);
    EXPECT_EQ(0u, exchangeBody(port, "POST", "debug/suspend", "{\"entity\":1}").find("200"));
    simulation.run(1, {push("tov:a"), push("tov:b"), pop(), pop()});
    simulation.run(0, {push("tov:a"), pass("tov:b"), pop()});
    EXPECT_TRUE(waitFor([&] { return framework.getDebugger().isSuspended(); }));
    for (const char* path :
         {"debug", "debug/entities", "debug/entities/1", "debug/entities/1/contexts", "debug/entities/1/contexts/0",
          "debug/entities/1/contexts/1", "debug/suspend", "events", "events/0", "world/x?a=1"}) {
        exchangeBody(port, "GET", path);
    }
    exchangeBody(port, "POST", "debug/stepin");
    exchangeBody(port, "OPTIONS", "debug");
    exchangeBody(port, "PUT", "debug");
    exchangeBody(port, "POST", "engines", "{\"debug\":1}");
    exchangeBody(port, "POST", "events/s", "{not json");
    exchangeBody(port, "DELETE", "events/0");
    EXPECT_TRUE(waitFor([&] {
        framework.getDebugger().resume();
        return simulation.finished == 2;
    }));
    simulation.join();
    simulation.onEntitiesUnregistration(entities, 3);
    exchangeBody(port, "DELETE", "events");
    exchangeBody(port, "DELETE", "events/subscriptions/1");
    framework.shutdownHttp();
    framework.unregisterEngine(simulation.getPath());
    log.resetErrors();
}

void roundTripData()
{
    utils::DynamicObject world;
    world.setString("agents[0].name", "forager");
    world.setReal("agents[0].energy", 0.75);
    world.setInt("tick", 42);
    tov::utils::MemoryInputOutput json;
    ASSERT_TRUE(utils::serializeDynamicObjectToJson(world, json, nullptr));
    utils::DynamicObject fromJson;
    ASSERT_TRUE(utils::deserializeDynamicObjectFromJson(fromJson, json, nullptr));
    unsigned int size = 0;
    char* saved = utils::serializeDynamicObject(size, fromJson, nullptr);
    ASSERT_NE(nullptr, saved);
    utils::DynamicObject fromSaved;
    EXPECT_TRUE(utils::deserializeDynamicObject(saved, size, fromSaved, nullptr));
    TOV_DELETE_ARRAY(saved);

    utils::RandomManager& streams = Facilities::instance().getRandomNumberGenerator();
    streams.seed(7);
    utils::Random stream = streams.createRandomStream(3);
    stream(100);
    char* savedStream = utils::serializeRandom(size, stream, nullptr);
    utils::Random loaded(1);
    EXPECT_TRUE(utils::deserializeRandom(savedStream, size, loaded, nullptr));
    TOV_DELETE_ARRAY(savedStream);
    char* savedManager = utils::serializeRandomManager(size, streams, nullptr);
    EXPECT_TRUE(utils::deserializeRandomManager(savedManager, size, streams, nullptr));
    TOV_DELETE_ARRAY(savedManager);
}

void runSession()
{
    LockedLogger log;
    ASSERT_TRUE(utils::initialize(nullptr));
    Facilities::instance().setLogger(log);
    runSimulationUnderTheInspector(log);
    roundTripData();
    Facilities::instance().clearLogger();
    ASSERT_TRUE(utils::terminate(nullptr));
}

struct Footprint {
    unsigned long long blocks;
    unsigned long long bytes;
};

Footprint measure()
{
    const allocator::Allocator& memory = allocator::Allocator::instance();
    return {memory.getLiveBlocks(), memory.getLiveBytes()};
}

// What an empty DynamicObject holds, built in place so that only its own parts count.
Footprint emptyObject()
{
    EXPECT_TRUE(utils::initialize(nullptr));
    alignas(utils::DynamicObject) unsigned char storage[sizeof(utils::DynamicObject)];
    const Footprint before = measure();
    utils::DynamicObject* object = new (storage) utils::DynamicObject();
    const Footprint after = measure();
    object->~DynamicObject();
    EXPECT_TRUE(utils::terminate(nullptr));
    return {after.blocks - before.blocks, after.bytes - before.bytes};
}

TEST(Session, GivesBackEveryBlockItTookButTheSharedEmptyFrameContent)
{
    const Footprint kept = emptyObject();
    const Footprint before = measure();
    runSession();
    // Left on purpose: the one empty object that every bottom frame (MainContext) shows, built on first
    // use and shared by every later session until the process ends.
    const Footprint afterFirst = measure();
    EXPECT_EQ(before.blocks + kept.blocks, afterFirst.blocks);
    EXPECT_EQ(before.bytes + kept.bytes, afterFirst.bytes);
    runSession();
    EXPECT_EQ(afterFirst.blocks, measure().blocks);
    EXPECT_EQ(afterFirst.bytes, measure().bytes);
}

} // namespace
} // namespace testing
} // namespace tov
