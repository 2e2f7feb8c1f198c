#include "Agent.h"
#include "JsonText.h"
#include "World.h"

#include "support/AssertionGuard.h"

#include <tov/utils/All.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace tov {
namespace testing {
namespace {

// The library is initialized with the Agent type registered, and assertions throw, so that input from
// a file that would reach one fails the test instead of ending it.
class DemoTest : public AssertionTest {
protected:
    void SetUp() override
    {
        AssertionTest::SetUp();
        ASSERT_TRUE(utils::initialize(nullptr));
        ASSERT_TRUE(demo::registerAgentType(utils::Facilities::instance().getTypeManager(), nullptr));
    }
    void TearDown() override
    {
        for (demo::Agent* agent : agents) {
            TOV_DELETE(agent);
        }
        for (const std::string& file : files) {
            std::remove(file.c_str());
        }
        utils::terminate(nullptr);
        AssertionTest::TearDown();
    }

    std::vector<demo::Agent*>& makeAgents(unsigned int count, unsigned int seed)
    {
        utils::RandomManager& random = utils::Facilities::instance().getRandomNumberGenerator();
        random.seed(seed);
        for (unsigned int i = 0; i < count; ++i) {
            agents.push_back(TOV_NEW demo::Agent(i, random.createRandomStream(i)));
        }
        return agents;
    }

    // The agent's behaviour without the debugger: what Simulation::live does between its frames.
    static void live(demo::Agent& agent, int rounds)
    {
        for (int i = 0; i < rounds; ++i) {
            if (!agent.hasGoal()) {
                agent.chooseGoal();
            }
            if (agent.moveTowardsGoal()) {
                agent.eat();
            }
        }
    }

    static std::string describe(const demo::Agent& agent)
    {
        char text[160];
        std::snprintf(text, sizeof text, "%.6f %.6f %.6f %.6f %.6f %d %d %d", agent.getX(), agent.getY(),
                      agent.getEnergy(), agent.getGoalX(), agent.getGoalY(), agent.getMeals(), agent.getAge(),
                      agent.getGeneration());
        return text;
    }

    std::string file(const std::string& name, const std::string& content = "")
    {
        std::string path = ::testing::TempDir() + name;
        files.push_back(path);
        if (!content.empty()) {
            std::ofstream(path) << content;
        }
        return path;
    }

    std::vector<demo::Agent*> agents;
    std::vector<std::string> files;
};

TEST_F(DemoTest, AgentsOfOneSeedLiveTheSameLivesWhateverTheOrderTheyRunIn)
{
    std::vector<demo::Agent*>& first = makeAgents(3, 1234);
    for (int i = 2; i >= 0; --i) {
        live(*first[i], 40);
    }
    std::vector<std::string> expected;
    expected.reserve(first.size());
    for (const demo::Agent* agent : first) {
        expected.push_back(describe(*agent));
    }
    makeAgents(3, 1234);
    const std::vector<demo::Agent*> again(agents.begin() + 3, agents.end());
    for (demo::Agent* agent : again) {
        live(*agent, 40);
    }
    for (unsigned int i = 0; i < 3; ++i) {
        EXPECT_EQ(expected[i], describe(*again[i])) << "agent " << i;
    }
    EXPECT_NE(expected[0], expected[1]); // each draws from a stream of its own
    EXPECT_GT(first[0]->getMeals(), 0);  // 40 strides of 2.5 cross the world at least once
}

// A newborn starts afresh from the dead agent's own stream: runs with a lifespan still repeat for a seed.
TEST_F(DemoTest, ANewbornTakesItsPlaceWithAFreshStateDrawnFromTheAgentsOwnStream)
{
    makeAgents(1, 55);
    makeAgents(1, 55);
    for (demo::Agent* agent : agents) {
        live(*agent, 30);
        agent->growOlder();
        agent->beReborn();
    }
    EXPECT_EQ(describe(*agents[0]), describe(*agents[1]));
    EXPECT_EQ(1, agents[0]->getGeneration());
    EXPECT_EQ(0, agents[0]->getAge());
    EXPECT_EQ(0, agents[0]->getMeals());
    EXPECT_EQ(demo::Agent::birthEnergy, agents[0]->getEnergy());
    EXPECT_FALSE(agents[0]->hasGoal());
}

// A saved world, in either form, brings each agent back with its state and its place in its stream:
// the loaded run goes on exactly as the saved one would have.
TEST_F(DemoTest, ASavedWorldLoadsBackInBothFormsAndGoesOnAsTheOriginal)
{
    std::vector<demo::Agent*>& original = makeAgents(4, 77);
    for (demo::Agent* agent : original) {
        live(*agent, 7);
    }
    demo::World world;
    world.reset(77, original);
    world.setTick(7);
    const std::string prefix = file("demo-world");
    files.push_back(prefix + ".json");
    files.push_back(prefix + ".txt");
    ASSERT_TRUE(world.save(prefix, nullptr));
    for (demo::Agent* agent : original) {
        live(*agent, 9);
    }

    for (const char* extension : {".json", ".txt"}) {
        utils::DynamicObject loaded;
        std::string reason;
        ASSERT_TRUE(demo::World::load((prefix + extension).c_str(), loaded, reason)) << extension;
        unsigned int seed = 0;
        long long tick = 0;
        utils::Facilities::instance().getRandomNumberGenerator().seed(999); // the saved streams win
        std::vector<demo::Agent*> restored;
        ASSERT_TRUE(demo::World::read(loaded, seed, tick, restored, reason)) << reason;
        EXPECT_EQ(77u, seed);
        EXPECT_EQ(7, tick);
        ASSERT_EQ(4u, restored.size()) << extension;
        for (unsigned int i = 0; i < restored.size(); ++i) {
            live(*restored[i], 9);
            EXPECT_EQ(describe(*original[i]), describe(*restored[i])) << extension << " agent " << i;
            TOV_DELETE(restored[i]);
        }
    }
}

// A world file from outside either describes a run or is refused with the reason, never an assertion.
TEST_F(DemoTest, WorldFilesOfTheWrongShapeAreRefusedWithTheReason)
{
    const struct {
        const char* content;
        const char* reason; // "" when it loads
    } cases[] = {
        {"{\"seed\":3,\"agents\":[{\"x\":1.5,\"meals\":2},{}]}", ""},
        {"{\"agents\":\"oops\"}", "'agents' is a string, not an array"},
        {"{\"agents\":[]}", "it has no agents"},
        {"{\"agents\":{\"0\":1}}", "'agents' is an object, not an array"},
        {"{\"seed\":\"x\",\"agents\":[{}]}", "'seed' is not a number from 0 to 4294967295"},
        {"{\"tick\":-4,\"agents\":[{}]}", "'tick' is not a count of rounds"},
        {"{\"agents\":[{},7]}", "agent 1: it is an integer, not an object"},
        {"{\"agents\":[{\"x\":\"far\"}]}", "agent 0: 'x' is not a number"},
        {"{\"agents\":[{\"random\":\"not a saved stream\"}]}", "agent 0: 'random' is not a saved random stream"},
        {"version { major: 9 } root { type: Object }", "it is neither JSON nor a saved text of this version"},
        {"{", "it holds no JSON object that can be read"},
        {"   ", "it is empty"},
    };
    for (const auto& c : cases) {
        const std::string path = file("demo-shape.json", c.content);
        utils::DynamicObject loaded;
        unsigned int seed = 5;
        long long tick = 3;
        std::string reason;
        const bool read =
            demo::World::load(path.c_str(), loaded, reason) && demo::World::read(loaded, seed, tick, agents, reason);
        EXPECT_EQ(*c.reason == '\0', read) << c.content;
        EXPECT_EQ(c.reason, read ? std::string() : reason) << c.content;
    }
    ASSERT_EQ(2u, agents.size());
    EXPECT_EQ(1.5, agents[0]->getX());
    EXPECT_EQ(2, agents[0]->getMeals());
}

TEST_F(DemoTest, ResourcePathsBecomePropertyPathsByTheKindsMetOnTheWay)
{
    utils::DynamicObject world;
    ASSERT_TRUE(demo::readJson("{\"seed\":1,\"agents\":[{\"x\":1.5},{\"x\":2.5,\"pos\":{\"y\":3}}]}", world, nullptr));
    const struct {
        const char* path;
        const char* key; // "" for none
    } cases[] = {
        {"/agents", "agents"},
        {"/agents/1", "agents[1]"},
        {"/agents/1/x", "agents[1].x"},
        {"/agents/1/pos/y", "agents[1].pos.y"},
        {"/agents//0/", "agents[0]"},
        {"/seed", "seed"},
        {"/agents/2", ""},
        {"/agents/x", ""},
        {"/seed/0", ""},
        {"/agents/0/x/y", ""},
        {"/agents.0", ""},
        {"/agents[0]", ""},
        {"/nothing", ""},
        {"/agents/99999999", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.key, demo::World::toPropertyPath(world, c.path, static_cast<unsigned int>(std::strlen(c.path))))
            << c.path;
    }
    EXPECT_EQ(std::string(1, '\0'), demo::World::toPropertyPath(world, "/", 1)); // the whole world
}

TEST_F(DemoTest, TheWorldServesObjectsArraysAndSingleValuesAsJsonReplies)
{
    std::vector<demo::Agent*>& made = makeAgents(2, 9);
    demo::World world;
    world.reset(9, made);
    world.setTick(42);
    const struct {
        const char* path;
        const char* reply; // "" for not found
    } cases[] = {
        {"/tick", "{\"tick\":42}"},
        {"/agents/1/meals", "{\"meals\":0}"},
        {"/agents/1/name", "{\"name\":\"forager-1\"}"},
        {"/agents/2", ""},
    };
    for (const auto& c : cases) {
        utils::MemoryInputOutput text;
        utils::JsonObjectBuilder json(text, false);
        EXPECT_EQ(*c.reply != '\0', world.serve(c.path, static_cast<unsigned int>(std::strlen(c.path)), json))
            << c.path;
        EXPECT_EQ(c.reply, text.getText()) << c.path;
    }
    utils::MemoryInputOutput whole;
    utils::JsonObjectBuilder json(whole, false);
    ASSERT_TRUE(world.serve("", 0, json));
    utils::DynamicObject read;
    ASSERT_TRUE(demo::readJson(whole.getText().c_str(), read, nullptr));
    EXPECT_EQ(2u, read.countChildren("agents"));
    EXPECT_EQ(9, read.getInt("seed"));
}

} // namespace
} // namespace testing
} // namespace tov
