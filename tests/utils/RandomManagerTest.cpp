#include <tov/utils/RandomManager.h>

#include <gtest/gtest.h>

using namespace tov::utils;

namespace {

bool sameStream(Random a, Random b)
{
    for (int i = 0; i < 700; ++i) {
        if (a() != b()) {
            return false;
        }
    }
    return true;
}

} // namespace

TEST(RandomManager, HandsOutStreamsSeededWithItsSeedXorTheIndexThatAReseedLeavesAlone)
{
    RandomManager manager;
    EXPECT_EQ(0xFFFF000u, manager.getSeed());
    EXPECT_TRUE(sameStream(Random(0xFFFF000u), manager.createRandomStream(0)));

    manager.seed(5);
    EXPECT_EQ(5u, manager.getSeed());
    EXPECT_TRUE(sameStream(Random(6), manager.createRandomStream(3)));
    EXPECT_FALSE(sameStream(manager.createRandomStream(1), manager.createRandomStream(2)));

    RandomManager other;
    other.seed(5);
    EXPECT_TRUE(sameStream(other.createRandomStream(77), manager.createRandomStream(77)));

    // Reseeding leaves the streams handed out before alone.
    manager.seed(10);
    Random early = manager.createRandomStream(1);
    manager.seed(20);
    EXPECT_TRUE(sameStream(Random(11), early));
}
