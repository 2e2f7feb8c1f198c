#include "utils/debugger/EventTestSupport.h"
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

// What the engine that `path` reaches answers, or "-" when none answers Ok.
std::string route(const std::string& path)
{
    tov::utils::MemoryInputOutput answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    const resources::Status status = Facilities::instance().getInspectionFramework().retrieveResource(
        path.data(), static_cast<unsigned int>(path.size()), nullptr, json);
    return status == resources::Ok ? tov::testing::textOf(answer) : "-";
}

} // namespace

TEST_F(InspectionTest, BelongsToTheFacilitiesStartsWithoutServerAndTakesAnEngineWithoutOverrides)
{
    EXPECT_EQ(&Facilities::instance(), &framework().getFacilities());
    EXPECT_STREQ("default", framework().getName());
    framework().setName("forager world");
    EXPECT_STREQ("forager world", framework().getName());
    EXPECT_FALSE(framework().isHttpStarted());
    EXPECT_EQ(8000u, framework().getHttpPort());

    // An engine without overrides knows no resource and switches its flag.
    PlainEngine engine("plain");
    ASSERT_TRUE(framework().registerEngine(engine));
    tov::utils::MemoryInputOutput answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    EXPECT_EQ(resources::NotFound, framework().retrieveResource("/plain/x", 8, nullptr, json));
    EXPECT_EQ(resources::NotFound, framework().createResource("/plain/x", 8, nullptr, json));
    EXPECT_EQ(resources::NotFound, framework().deleteResource("/plain/x", 8, nullptr, json));
    EXPECT_FALSE(engine.isEnabled());
    framework().enableEngine("plain");
    EXPECT_TRUE(framework().isEngineEnabled("plain"));
    framework().unregisterEngine("plain");
    EXPECT_FALSE(engine.isEnabled());
}

TEST_F(InspectionTest, RegistrationRefusesAPathTakenAndUnregistrationDisablesFirst)
{
    ScriptedEngine& a = addEngine("xa");
    ScriptedEngine& b = addEngine("xb", false);
    addEngine("xc");
    ScriptedEngine second("xa", true, resources::Ok);
    EXPECT_FALSE(framework().registerEngine(second));
    EXPECT_TRUE(log.has("e: An engine having the same path (xa) was already registered."));
    framework().unregisterEngine("xb");
    EXPECT_EQ(0, b.disables.load()); // disabled already
    framework().unregisterEngine("xa");
    EXPECT_EQ(1, a.disables.load());
    // The others keep their order: a segment that all of them begin with meets the first, now xc.
    EXPECT_EQ("{\"engine\":\"xc\",\"rest\":\"\"}", route("/x"));
    EXPECT_TRUE(framework().registerEngine(second));
    framework().unregisterEngine("xa");
}

TEST_F(InspectionTest, EnablesAndDisablesEachEngineOnlyWhenItsFlagChangesAndWarnsOfUnknownPaths)
{
    ScriptedEngine& a = addEngine("a", false);
    ScriptedEngine& b = addEngine("b", false);
    framework().enableEngine("a");
    framework().enableEngine("a");
    framework().enableAllEngines();
    EXPECT_EQ(1, a.enables.load());
    EXPECT_TRUE(framework().isEngineEnabled("b"));
    framework().disableAllEngines();
    framework().disableEngine("b");
    EXPECT_EQ(1, b.disables.load());
    EXPECT_FALSE(a.isEnabled() || b.isEnabled());

    // A path that no engine has is a warning that says what is ignored.
    log.clear();
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

// Clients choose the paths to look up (POST on "engines"): storing them would grow the shared table.
TEST_F(InspectionTest, LooksPathsUpWithoutStoringThem)
{
    addEngine("world");
    tov::utils::StringTable& strings = Facilities::instance().getStringTable();
    const unsigned long long liveBytes = tov::allocator::Allocator::instance().getLiveBytes();
    for (int i = 0; i < 100; ++i) {
        const std::string path = "ghost" + std::to_string(i);
        framework().enableEngine(path.c_str());
        EXPECT_EQ(nullptr, strings.retrieve(tov::utils::StringTable::computeHash(
                                                path.data(), static_cast<unsigned int>(path.size()), strings.getSeed()),
                                            nullptr));
    }
    EXPECT_EQ(liveBytes, tov::allocator::Allocator::instance().getLiveBytes());
}

// The debugger's own engine comes first in the table, so requests that match any engine meet it.
TEST_F(InspectionTest, RoutesToTheFirstEngineWhoseSegmentsMatchOverTheShorterLength)
{
    addEngine("probe");
    addEngine("events");
    addEngine("world/agents");
    const std::pair<const char*, const char*> cases[] = {
        {"/probe/entities/0", "{\"engine\":\"probe\",\"rest\":\"/entities/0\"}"},
        {"probe", "{\"engine\":\"probe\",\"rest\":\"\"}"},
        {"/pro/entities", "{\"engine\":\"probe\",\"rest\":\"/entities\"}"},
        {"/prober/x", "{\"engine\":\"probe\",\"rest\":\"/x\"}"},
        {"/ev/x", "{\"engine\":\"events\",\"rest\":\"/x\"}"},
        {"/deb", "{\"name\":\"default\",\"description\":\"\"}"},
        {"", "{\"name\":\"default\",\"description\":\"\"}"},
        {"/", "{\"name\":\"default\",\"description\":\"\"}"},
        {"/debug/", "[]"}, // "/" is not the empty path: the debugger lists its entities
        // Two segments: the offsets add up, so the walk moves on instead of going back and forth.
        {"/world/agents/7/pos", "{\"engine\":\"world/agents\",\"rest\":\"/7/pos\"}"},
        {"/w/a", "{\"engine\":\"world/agents\",\"rest\":\"\"}"},
        {"/world", "{\"engine\":\"world/agents\",\"rest\":\"\"}"}, // an empty segment matches any
        {"/world/x", "-"},
        {"/zebra", "-"},
        {"//probe", "-"}, // not a path
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.second, route(c.first)) << c.first;
    }
}

TEST_F(InspectionTest, HandsTheQueryAndTheDelimitedRestToTheEngine)
{
    ScriptedEngine& engine = addEngine("world", true, resources::Error);
    tov::utils::DynamicObject query;
    query.setInt("step", 3);
    tov::utils::MemoryInputOutput answer;
    tov::utils::JsonObjectBuilder json(answer, false);
    EXPECT_EQ(resources::Error, framework().createResource("/world/agents/2 and more", 15, &query, json));
    EXPECT_EQ(resources::Error, framework().deleteResource("/world", 6, nullptr, json));
    EXPECT_EQ(std::vector<std::string>({"c /agents/2 {\"step\":3}", "d  "}), engine.getCalls());
}

using InspectionAssertionTest = tov::testing::StartedLibrary;

TEST_F(InspectionAssertionTest, NullPathsBreakTheContract)
{
    InspectionFramework& inspector = Facilities::instance().getInspectionFramework();
    PlainEngine nameless(nullptr);
    EXPECT_EQ(nullptr, nameless.getPath());
    EXPECT_ASSERTION(static_cast<void>(inspector.registerEngine(nameless)), "The given engine returns a NULL path.");
    EXPECT_ASSERTION(inspector.unregisterEngine(nullptr), "The given path is NULL.");
    EXPECT_ASSERTION(inspector.enableEngine(nullptr), "The given path is NULL.");
    EXPECT_ASSERTION(inspector.disableEngine(nullptr), "The given path is NULL.");
    EXPECT_ASSERTION(inspector.isEngineEnabled(nullptr), "The given path is NULL.");
    // When the assertion function returns, nothing reads the null path.
    tov::testing::RecordingAssertions recording;
    EXPECT_FALSE(inspector.registerEngine(nameless));
    inspector.unregisterEngine(nullptr);
    EXPECT_FALSE(inspector.isEngineEnabled(nullptr));
    EXPECT_EQ(3u, recording.messages().size());
}

TEST(InspectionFrameworkLifeCycle, ComesAndGoesWithTheFacilitiesWithoutLeaking)
{
    const unsigned long long blocks = tov::allocator::Allocator::instance().getLiveBlocks();
    for (int cycle = 0; cycle < 3; ++cycle) {
        ASSERT_TRUE(tov::utils::initialize(nullptr));
        PlainEngine engine("world");
        ASSERT_TRUE(Facilities::instance().getInspectionFramework().registerEngine(engine));
        tov::utils::terminate(nullptr); // a host may end without unregistering
    }
    EXPECT_EQ(blocks, tov::allocator::Allocator::instance().getLiveBlocks());
}
