#include "utils/debugger/InspectionTestSupport.h"

#include "support/AssertionGuard.h"
#include "support/RecordingAssertions.h"

#include <tov/allocator/Allocator.h>
#include <tov/utils/JsonObjectBuilder.h>
#include <tov/utils/StringTable.h>

using tov::testing::InspectionTest;
using tov::testing::ScriptedEngine;
using tov::utils::Facilities;
using tov::utils::debugger::AbstractEngine;
using tov::utils::debugger::InspectionFramework;
namespace resources = tov::utils::debugger::resources;

namespace {

class PlainEngine : public AbstractEngine {
public:
    explicit PlainEngine(const char* path) : AbstractEngine(path, false) {}
};

// Routes `path` and tells which engine answered and what rest it got, or "-" when none did.
std::string route(InspectionFramework& framework, const std::string& path)
{
    tov::testing::MemoryStream answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    const resources::Status status =
        framework.retrieveResource(path.data(), static_cast<unsigned int>(path.size()), nullptr, json);
    return status == resources::Ok ? answer.getText() : "-";
}

} // namespace

TEST_F(InspectionTest, IsOwnedByTheFacilitiesAndKnowsThem)
{
    InspectionFramework& inspector = framework();
    EXPECT_EQ(&Facilities::instance(), &inspector.getFacilities());
    EXPECT_STREQ("default", inspector.getName());
    inspector.setName("forager world");
    EXPECT_STREQ("forager world", inspector.getName());
    EXPECT_FALSE(inspector.isHttpStarted());
    EXPECT_EQ(8000u, inspector.getHttpPort());
}

TEST_F(InspectionTest, AnEngineWithoutOverridesKnowsNoResource)
{
    PlainEngine engine("plain");
    ASSERT_TRUE(framework().registerEngine(engine));
    tov::testing::MemoryStream answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    EXPECT_EQ(resources::NotFound, framework().retrieveResource("/plain/x", 8, nullptr, json));
    EXPECT_EQ(resources::NotFound, framework().createResource("/plain/x", 8, nullptr, json));
    EXPECT_EQ(resources::NotFound, framework().deleteResource("/plain/x", 8, nullptr, json));
    EXPECT_EQ("", answer.getText());
    EXPECT_FALSE(engine.isEnabled());
    engine.enable();
    EXPECT_TRUE(engine.isEnabled());
    framework().unregisterEngine("plain");
    EXPECT_FALSE(engine.isEnabled());
}

TEST_F(InspectionTest, RefusesASecondEngineWithTheSamePath)
{
    ScriptedEngine& first = addEngine("world");
    ScriptedEngine second("world");
    EXPECT_FALSE(framework().registerEngine(second));
    EXPECT_TRUE(log.has("e: An engine having the same path (world) was already registered."));
    EXPECT_EQ("{\"engine\":\"world\",\"rest\":\"/3\"}", route(framework(), "/world/3"));
    EXPECT_TRUE(first.isEnabled());
}

TEST_F(InspectionTest, UnregisteringDisablesTheEngineFirstAndKeepsTheOrderOfTheOthers)
{
    ScriptedEngine& a = addEngine("a");
    ScriptedEngine& b = addEngine("b", false);
    ScriptedEngine& c = addEngine("c");
    framework().unregisterEngine("b");
    EXPECT_EQ(0, b.disables.load());   // it was disabled already
    framework().unregisterEngine("a");
    EXPECT_EQ(1, a.disables.load());
    EXPECT_FALSE(a.isEnabled());
    EXPECT_EQ("-", route(framework(), "/a/x"));
    // The empty path meets the first engine of the table, which is now c.
    EXPECT_EQ("{\"engine\":\"c\",\"rest\":\"\"}", route(framework(), ""));
    EXPECT_TRUE(c.isEnabled());
    EXPECT_TRUE(framework().registerEngine(a));   // the path is free again
    registered.push_back(&a);
}

TEST_F(InspectionTest, UnknownPathsAreWarningsThatSayWhatIsIgnored)
{
    addEngine("world");
    framework().unregisterEngine("ghost");
    framework().enableEngine("ghost");
    framework().disableEngine("ghost");
    EXPECT_FALSE(framework().isEngineEnabled("ghost"));
    const std::vector<std::string> expected = {
        "w: No register engine having the path ghost, ignoring the unregistration.",
        "w: No register engine having the path ghost, ignoring the enabling.",
        "w: No register engine having the path ghost, ignoring the disabling.",
        "w: No register engine having the path ghost, considering it disabled.",
    };
    EXPECT_EQ(expected, log.getMessages());
}

TEST_F(InspectionTest, EnablesAndDisablesByPathOrAll)
{
    ScriptedEngine& a = addEngine("a", false);
    ScriptedEngine& b = addEngine("b", false);
    framework().enableEngine("a");
    EXPECT_TRUE(framework().isEngineEnabled("a"));
    EXPECT_FALSE(framework().isEngineEnabled("b"));
    framework().enableEngine("a");
    EXPECT_EQ(1, a.enables.load());
    framework().enableAllEngines();
    EXPECT_TRUE(b.isEnabled());
    EXPECT_EQ(1, a.enables.load());
    framework().disableAllEngines();
    EXPECT_FALSE(a.isEnabled() || b.isEnabled());
    framework().disableEngine("b");
    EXPECT_EQ(1, b.disables.load());
}

// Looking a path up must not store it: paths to look up come from clients of the HTTP server.
TEST_F(InspectionTest, LooksPathsUpWithoutGrowingTheSharedStringTable)
{
    addEngine("world");
    tov::utils::StringTable& strings = Facilities::instance().getStringTable();
    const tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    framework().enableEngine("warm up");
    const unsigned long long liveBytes = memory.getLiveBytes();
    for (int i = 0; i < 200; ++i) {
        const std::string path = "ghost" + std::to_string(i);
        framework().enableEngine(path.c_str());
        EXPECT_FALSE(framework().isEngineEnabled(path.c_str()));
        EXPECT_EQ(nullptr, strings.retrieve(tov::utils::StringTable::computeHash(path.data(),
                                                                                static_cast<unsigned int>(path.size()),
                                                                                strings.getSeed()),
                                            nullptr));
    }
    EXPECT_EQ(liveBytes, memory.getLiveBytes());
    EXPECT_STREQ("world", strings.retrieve(strings.hash("world", nullptr), nullptr));
}

TEST_F(InspectionTest, RoutesToTheFirstEngineWhoseSegmentsMatchOverTheShorterLength)
{
    addEngine("debug");
    addEngine("events");
    addEngine("world/agents");
    struct Case {
        const char* path;
        const char* answer;
    };
    const Case cases[] = {
        {"/debug/entities/0", "{\"engine\":\"debug\",\"rest\":\"/entities/0\"}"},
        {"debug", "{\"engine\":\"debug\",\"rest\":\"\"}"},
        {"/deb/entities", "{\"engine\":\"debug\",\"rest\":\"/entities\"}"},
        {"/debugger/x", "{\"engine\":\"debug\",\"rest\":\"/x\"}"},
        {"/ev/x", "{\"engine\":\"events\",\"rest\":\"/x\"}"},
        {"", "{\"engine\":\"debug\",\"rest\":\"\"}"},
        {"/", "{\"engine\":\"debug\",\"rest\":\"\"}"},
        {"/world/agents/7/pos", "{\"engine\":\"world/agents\",\"rest\":\"/7/pos\"}"},
        {"/w/a", "{\"engine\":\"world/agents\",\"rest\":\"\"}"},
        {"/world/x", "-"},
        {"/world", "{\"engine\":\"world/agents\",\"rest\":\"\"}"},   // an empty segment matches any
        {"/zebra", "-"},
        {"//debug", "-"},   // not a path
        {"/ debug", "-"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.answer, route(framework(), c.path)) << c.path;
    }
}

TEST_F(InspectionTest, HandsTheQueryAndTheRestToTheEngine)
{
    ScriptedEngine& engine = addEngine("world");
    tov::utils::DynamicObject query;
    query.setInt("step", 3);
    tov::testing::MemoryStream answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    const char path[] = "/world/agents/2 and more";
    EXPECT_EQ(resources::Ok, framework().createResource(path, 15, &query, json));
    EXPECT_EQ(resources::Ok, framework().deleteResource(path, 15, nullptr, json));
    const std::vector<ScriptedEngine::Call> calls = engine.getCalls();
    ASSERT_EQ(2u, calls.size());
    EXPECT_EQ('c', calls[0].operation);
    EXPECT_EQ("/agents/2", calls[0].rest);
    EXPECT_EQ("{\"step\":3}", calls[0].query);
    EXPECT_EQ('d', calls[1].operation);
    EXPECT_EQ("", calls[1].query);
}

TEST_F(InspectionTest, EveryStatusOfTheEngineComesBack)
{
    ScriptedEngine& engine = addEngine("world", true, resources::Error);
    tov::testing::MemoryStream answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    EXPECT_EQ(resources::Error, framework().retrieveResource("world", 5, nullptr, json));
    engine.status = resources::NotFound;
    EXPECT_EQ(resources::NotFound, framework().createResource("world", 5, nullptr, json));
}

class InspectionAssertionTest : public tov::testing::AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        ASSERT_TRUE(tov::utils::initialize(nullptr));
        Facilities::instance().setLogger(log);
    }
    void TearDown() override
    {
        Facilities::instance().clearLogger();
        tov::utils::terminate(nullptr);
        AssertionTest::TearDown();
    }

    tov::testing::LockedLogger log;
};

TEST_F(InspectionAssertionTest, NullPathsBreakTheContract)
{
    InspectionFramework& inspector = Facilities::instance().getInspectionFramework();
    PlainEngine nameless(nullptr);
    EXPECT_EQ(nullptr, nameless.getPath());
    EXPECT_ASSERTION(inspector.registerEngine(nameless), "The given engine returns a NULL path.");
    EXPECT_ASSERTION(inspector.unregisterEngine(nullptr), "The given path is NULL.");
    EXPECT_ASSERTION(inspector.enableEngine(nullptr), "The given path is NULL.");
    EXPECT_ASSERTION(inspector.disableEngine(nullptr), "The given path is NULL.");
    EXPECT_ASSERTION(inspector.isEngineEnabled(nullptr), "The given path is NULL.");
}

TEST(InspectionAssertionsThatReturn, CarryOnWithoutTouchingTheNullPath)
{
    ASSERT_TRUE(tov::utils::initialize(nullptr));
    {
        tov::testing::RecordingAssertions recording;
        InspectionFramework& inspector = Facilities::instance().getInspectionFramework();
        PlainEngine nameless(nullptr);
        EXPECT_FALSE(inspector.registerEngine(nameless));
        inspector.unregisterEngine(nullptr);
        inspector.enableEngine(nullptr);
        EXPECT_FALSE(inspector.isEngineEnabled(nullptr));
        EXPECT_EQ(4u, recording.messages().size());
    }
    tov::utils::terminate(nullptr);
}

TEST(InspectionFrameworkLifeCycle, ComesAndGoesWithTheFacilitiesWithoutLeaking)
{
    const tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long blocks = memory.getLiveBlocks();
    for (int cycle = 0; cycle < 3; ++cycle) {
        ASSERT_TRUE(tov::utils::initialize(nullptr));
        ScriptedEngine engine("world");
        InspectionFramework& inspector = Facilities::instance().getInspectionFramework();
        ASSERT_TRUE(inspector.registerEngine(engine));
        inspector.unregisterEngine("world");
        tov::utils::terminate(nullptr);
    }
    EXPECT_EQ(blocks, memory.getLiveBlocks());
}
