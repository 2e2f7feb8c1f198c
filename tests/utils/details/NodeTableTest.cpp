// NodeTable's guess of the next node: taken only for the very next handle inside one block, so that a walk
// never steps past the end of a block into memory that is not the node it names.
#include <tov/utils/details/NodeTable.h>

#include <gtest/gtest.h>

namespace tov {
namespace utils {
namespace {

using details::DynamicObjectNode;
using details::NodeTable;

TEST(NodeTableTest, TheNextNodeIsGuessedOnlyWithinABlockOfAPowerOfTwo)
{
    DynamicObjectNode first[4] = {};
    DynamicObjectNode second[4] = {};
    DynamicObjectNode* blocks[] = {first, second};
    const NodeTable table(blocks, 2, 4); // handles 1 to 4 in the first block, 5 to 8 in the second

    EXPECT_TRUE(table.follows(1, 2));
    EXPECT_TRUE(table.follows(3, 4));
    EXPECT_FALSE(table.follows(4, 5)); // the next handle starts the next block
    EXPECT_FALSE(table.follows(2, 4));
    EXPECT_FALSE(table.follows(0, 1)); // no node in hand
    EXPECT_EQ(&first[3], table.stepDown(&first[2], 3, 4));
    EXPECT_EQ(&second[0], table.stepDown(&first[3], 4, 5));
    EXPECT_EQ(nullptr, table.stepDown(&second[3], 8, 9)); // beyond the blocks

    DynamicObjectNode odd[3] = {};
    DynamicObjectNode* oddBlocks[] = {odd};
    const NodeTable unguessed(oddBlocks, 1, 3);
    EXPECT_FALSE(unguessed.follows(1, 2));
    EXPECT_EQ(&odd[1], unguessed.stepDown(&odd[0], 1, 2));
}

} // namespace
} // namespace utils
} // namespace tov
