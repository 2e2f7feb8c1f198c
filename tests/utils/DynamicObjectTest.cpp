// The trie store under DynamicObject: node handles and roles, reuse of nodes, copies and assignment.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/allocator/Allocator.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/StringTable.h>

#include <gtest/gtest.h>

namespace tov {
namespace utils {
namespace {

using testing::AssertionTest;
using testing::snapshotTrie;
using testing::TrieNode;

using Nodes = std::map<unsigned int, TrieNode>;

class DynamicObjectTrieTest : public AssertionTest {};

TEST_F(DynamicObjectTrieTest, AKeyChainsBelowTheRootSplitNode2AndErasingOrClearingGivesTheSlotsBack)
{
    DynamicObject object;
    EXPECT_EQ(2u, object.getRoot());
    EXPECT_TRUE(object.empty());
    Nodes nodes = snapshotTrie(object, object.getRoot());
    ASSERT_EQ(2u, nodes.size());
    EXPECT_EQ(0, nodes.at(2).splitChar);
    EXPECT_EQ(3u, nodes.at(2).equal);
    EXPECT_EQ("null", nodes.at(3).value);
    // Node 1 is the unreachable root p node: the first key gets 4 onwards.
    EXPECT_EQ(6u, object.addProperty("ab"));
    nodes = snapshotTrie(object, object.getRoot());
    EXPECT_EQ(4u, nodes.at(2).greater);
    EXPECT_EQ('a', nodes.at(4).splitChar);
    EXPECT_EQ(5u, nodes.at(4).equal);
    EXPECT_EQ('b', nodes.at(5).splitChar);
    EXPECT_EQ(6u, nodes.at(5).equal);
    EXPECT_EQ(0, nodes.at(6).splitChar);
    EXPECT_EQ(7u, nodes.at(6).equal);
    EXPECT_TRUE(nodes.at(7).isValue);
    EXPECT_EQ("#1", nodes.at(3).value);
    EXPECT_EQ(type::object, object.getType(object.getRoot()));

    ASSERT_TRUE(object.eraseChild(object.getRoot(), "ab"));
    EXPECT_TRUE(object.empty());
    EXPECT_EQ(2u, snapshotTrie(object, object.getRoot()).size());
    // Every node was the last slot when freed: the same key comes back on the same handles.
    EXPECT_EQ(6u, object.addProperty("ab"));
    EXPECT_EQ(4u, snapshotTrie(object, object.getRoot()).at(2).greater);
}

TEST_F(DynamicObjectTrieTest, FreedNodesInsideAreReusedLastFreedFirst)
{
    DynamicObject object;
    object.addProperty("ab");                // 4 a, 5 b, 6 split, 7 value
    EXPECT_EQ(9u, object.addProperty("ac")); // 8 c on the greater side of b, 9 split, 10 value
    Nodes nodes = snapshotTrie(object, object.getRoot());
    EXPECT_EQ(8u, nodes.at(5).greater);
    EXPECT_EQ(5u, nodes.at(4).equal);
    ASSERT_TRUE(object.eraseChild(object.getRoot(), "ab"));
    // b stays, as c hangs on it; the value 7 and then the split node 6 went to the free list.
    nodes = snapshotTrie(object, object.getRoot());
    EXPECT_EQ(1u, nodes.count(5));
    EXPECT_EQ(0u, nodes.at(5).equal);
    // "ad": its character takes 6, its split node 7, its value the next fresh slot, 11.
    EXPECT_EQ(7u, object.addProperty("ad"));
    nodes = snapshotTrie(object, object.getRoot());
    EXPECT_EQ('d', nodes.at(6).splitChar);
    EXPECT_EQ(11u, nodes.at(7).equal);
    EXPECT_EQ(6u, nodes.at(8).greater);
}

TEST_F(DynamicObjectTrieTest, BooleansAreStoredInverted)
{
    StringTable table(100);
    DynamicObject::NodeAllocator nodes(16);
    {
        DynamicObject object(nodes, table);
        object.setBool("t", true);  // 4 t, 5 split, 6 value
        object.setBool("f", false); // 7 f, 8 split, 9 value
        EXPECT_TRUE(object.getBool("t"));
        EXPECT_FALSE(object.getBool("f"));
    }
    // The block comes back from the allocator as the object left it.
    details::DynamicObjectNode* block = nodes.allocate();
    EXPECT_EQ(1, block[5].leaf.isValue);
    EXPECT_EQ(type::boolean, block[5].leaf.type);
    EXPECT_EQ(0u, block[5].leaf.value.bits);
    EXPECT_EQ(1u, block[8].leaf.value.bits);
    nodes.free(block);
}

TEST_F(DynamicObjectTrieTest, CharactersFrom0x80SortBelowTheSplitNode)
{
    DynamicObject object;
    const char accented[] = "\xC3\xA9";
    object.setInt(accented, 1);
    Nodes nodes = snapshotTrie(object, object.getRoot());
    EXPECT_EQ(0u, nodes.at(2).greater);
    EXPECT_EQ(4u, nodes.at(2).less);
    EXPECT_EQ(1, object.getInt(accented));

    // "a" after "a\xC3": its split node heads the level, the 0xC3 node goes to its less side, and the
    // children of "a" hang on its greater side, where every search finds them.
    object.setInt("a\xC3", 2);
    object.setInt("a.x", 3);
    const unsigned int a = object.getProperty("a");
    nodes = snapshotTrie(object, object.getRoot());
    const unsigned int nodeOfA = nodes.at(2).greater;
    EXPECT_EQ(a, nodes.at(nodeOfA).equal);
    EXPECT_EQ(static_cast<signed char>('\xC3'), nodes.at(nodes.at(a).less).splitChar);
    EXPECT_EQ('.', nodes.at(nodes.at(a).greater).splitChar);
    EXPECT_EQ(3, object.getInt("a.x"));
    EXPECT_EQ(object.getChild(a, "x"), object.getProperty("a.x"));
    EXPECT_EQ(2, object.getInt("a\xC3"));
    EXPECT_TRUE(object.eraseChild(object.getRoot(), "a"));
    EXPECT_FALSE(object.hasProperty("a"));
    EXPECT_FALSE(object.hasProperty("a.x"));
    EXPECT_EQ(2, object.getInt("a\xC3"));
    EXPECT_EQ(2u, object.countChildren(object.getRoot()));

    // The other order: the 0xC3 node goes to the less side of the split node of "b".
    object.setInt("b.x", 4);
    object.setInt("b\xC3", 5);
    nodes = snapshotTrie(object, object.getRoot());
    EXPECT_NE(0u, nodes.at(object.getProperty("b")).less);
    EXPECT_EQ(4, object.getInt("b.x"));
    EXPECT_EQ(5, object.getInt("b\xC3"));
}

TEST_F(DynamicObjectTrieTest, APropertyAddedAfterALongerSiblingHeadsItsLevel)
{
    DynamicObject object;
    object.setInt("pos2", 1); // 4 p, 5 o, 6 s, 7 2, 8 split, 9 value
    object.setInt("pos[1]", 2);
    object.setInt("ab-c", 3);
    object.setInt("ab.x", 4);
    object.setInt("ab\xC3", 5);
    // "pos" gets a split node at the head of the level after "s", the "2" going to its greater side.
    const unsigned int pos = object.getProperty("pos");
    EXPECT_EQ(10u, pos);
    Nodes nodes = snapshotTrie(object, object.getRoot());
    EXPECT_EQ(pos, nodes.at(6).equal);
    EXPECT_EQ(7u, nodes.at(pos).greater);
    EXPECT_EQ('[', nodes.at(nodes.at(7).greater).splitChar);
    EXPECT_EQ(2, object.getInt("pos[1]"));
    EXPECT_EQ(object.getChild(pos, 1u), object.getProperty("pos[1]"));
    EXPECT_EQ(1, object.getInt("pos2"));
    EXPECT_EQ(4, object.getInt("ab.x"));
    EXPECT_EQ(3, object.getInt("ab-c"));
    EXPECT_EQ(5, object.getInt("ab\xC3"));
    EXPECT_EQ((std::vector<std::string>{"", "ab\xC3", "ab", "ab-c", "ab.x", "pos", "pos2", "pos[0]", "pos[1]"}),
              testing::walkKeys(object, 0));
    EXPECT_TRUE(object.eraseChild(object.getRoot(), "pos"));
    EXPECT_EQ(1, object.getInt("pos2"));
    EXPECT_FALSE(object.hasProperty("pos[1]"));
}

TEST_F(DynamicObjectTrieTest, ZeroBytesNeverEnterTheTrieAndOnlyLiveHandlesInTheBlocksAreProperties)
{
    DynamicObject object;
    object.setInt("a", 5);
    const char withZero[] = {'a', '\0', 'b'};
    EXPECT_EQ(0u, object.addProperty(withZero, 3));
    EXPECT_FALSE(object.hasProperty(withZero, 3));
    EXPECT_EQ(0u, object.getProperty(withZero, 3));
    EXPECT_EQ(5, object.getInt("a"));
    // The message is cut at the zero byte.
    EXPECT_EQ("The given child key, a", assertionOf([&] { object.addChild(object.getRoot(), withZero, 3); }));

    // A handle beyond the blocks asserts; a dead or a value handle is no property.
    DynamicObject handles;
    EXPECT_EQ("Block index out of range", assertionOf([&] { handles.getType(1000); }));
    EXPECT_EQ(type::null, handles.getType(0u));
    handles.setInt("ab", 7);
    handles.setInt("ac", 8);
    handles.eraseChild(handles.getRoot(), "ab");
    EXPECT_EQ(type::null, handles.getType(6));  // the split node of "ab", now free
    EXPECT_EQ(type::null, handles.getType(10)); // a value node
    EXPECT_EQ("Invalid property", assertionOf([&] { handles.getInt(10); }));
}

TEST_F(DynamicObjectTrieTest, CopyKeepsHandlesButNotTheFreeListAndACopyFromARefSharesAllocatorAndTable)
{
    DynamicObject source;
    source.setInt("ab", 1);
    source.setString("ac", "text");
    source.eraseChild(source.getRoot(), "ab");
    const unsigned int ac = source.getProperty("ac");

    DynamicObject copy(source);
    EXPECT_TRUE(copy.isOwningStringTable());
    EXPECT_NE(&source.getStringTable(), &copy.getStringTable());
    EXPECT_EQ(ac, copy.getProperty("ac"));
    EXPECT_STREQ("text", copy.getString(ac));
    EXPECT_NE(source.getString(ac), copy.getString(ac));
    // The source reuses its freed nodes; the copy does not know them and takes fresh slots.
    EXPECT_EQ(7u, source.addProperty("ad"));
    EXPECT_EQ(12u, copy.addProperty("ad"));

    // A copy from a Ref shares the allocator and the table, not the content.
    source.setInt("x", 4);
    DynamicObject shared{DynamicObject::Ref(source)};
    EXPECT_FALSE(shared.isOwningNodeAllocator());
    EXPECT_FALSE(shared.isOwningStringTable());
    EXPECT_EQ(&source.getNodeAllocator(), &shared.getNodeAllocator());
    EXPECT_EQ(&source.getStringTable(), &shared.getStringTable());
    shared.setInt("x", 5);
    EXPECT_EQ(4, source.getInt("x"));
    EXPECT_EQ(5, shared.getInt("x"));
}

// Fills an object far enough to span several small blocks, with a hole on the free list.
void fill(DynamicObject& object)
{
    for (int i = 0; i < 12; ++i) {
        const std::string key = "item" + std::to_string(i) + ".value";
        object.setInt(key.c_str(), i);
    }
    object.setString("name", "shared");
    object.eraseChild(object.getRoot(), "item3");
}

void expectFilled(const DynamicObject& object)
{
    for (int i = 0; i < 12; ++i) {
        const std::string key = "item" + std::to_string(i) + ".value";
        if (i == 3) {
            EXPECT_FALSE(object.hasProperty(key.c_str()));
        } else {
            EXPECT_EQ(i, object.getInt(key.c_str())) << key;
        }
    }
    EXPECT_STREQ("shared", object.getString("name"));
}

struct BlockSizes {
    unsigned int source;
    unsigned int target;
};

class DynamicObjectAssignmentTest : public DynamicObjectTrieTest, public ::testing::WithParamInterface<BlockSizes> {};

TEST_P(DynamicObjectAssignmentTest, AssignmentAcrossBlockSizesKeepsHandlesAndLiveNodes)
{
    StringTable sourceTable(100);
    StringTable targetTable(100);
    DynamicObject::NodeAllocator sourceNodes(GetParam().source);
    DynamicObject::NodeAllocator targetNodes(GetParam().target);
    {
        DynamicObject source(sourceNodes, sourceTable);
        fill(source);
        DynamicObject target(targetNodes, targetTable);
        target.setInt("old", 1);
        target = source;
        expectFilled(target);
        EXPECT_FALSE(target.hasProperty("old"));
        EXPECT_EQ(source.getProperty("item7.value"), target.getProperty("item7.value"));

        // The next node comes where the source's would have come from fresh slots, never onto a live one.
        DynamicObject fresh(source);
        const unsigned int expected = fresh.addProperty("z");
        EXPECT_EQ(expected, target.addProperty("z"));
        for (int i = 0; i < 40; ++i) {
            const std::string key = "more" + std::to_string(i);
            target.setInt(key.c_str(), -i);
        }
        expectFilled(target);
        for (int i = 0; i < 40; ++i) {
            const std::string key = "more" + std::to_string(i);
            EXPECT_EQ(-i, target.getInt(key.c_str()));
        }
        // A clear starts again from handle 2, whatever the blocks and the free list held.
        target.clear();
        EXPECT_TRUE(target.empty());
        EXPECT_EQ(2u, target.getRoot());
        EXPECT_EQ(6u, target.addProperty("ab"));
    }
}

INSTANTIATE_TEST_SUITE_P(BlockSizes, DynamicObjectAssignmentTest,
                         ::testing::Values(BlockSizes{4, 128}, BlockSizes{128, 4}, BlockSizes{5, 7}, BlockSizes{7, 5},
                                           BlockSizes{16, 16}));

TEST_F(DynamicObjectTrieTest, AssignmentReplacesASharedStringTableForEverybody)
{
    StringTable table(100);
    DynamicObject::NodeAllocator nodes(128);
    DynamicObject first(nodes, table);
    DynamicObject second(nodes, table);
    second.setString("s", "kept?");
    DynamicObject source;
    source.setString("t", "new");
    first = source;
    EXPECT_STREQ("new", first.getString("t"));
    // The shared table now holds only what the source's held: the second object's text is gone.
    EXPECT_EQ(nullptr, second.getString("s"));
    const unsigned int s = second.getProperty("s");
    EXPECT_EQ("unknown string", snapshotTrie(second, s).at(snapshotTrie(second, s).at(s).equal).value);
}

TEST_F(DynamicObjectTrieTest, TheTrieDumpStopsAtTheFirstRefusal)
{
    DynamicObject object;
    object.setInt("a", 1);
    // The handle 0 is an object with its handle only.
    const Nodes none = snapshotTrie(object, 0);
    ASSERT_EQ(1u, none.size());
    EXPECT_EQ(0, none.begin()->second.splitChar);
    // A DynamicObjectBuilder refuses the name of one character 0 that a split node is written under.
    DynamicObject dump;
    DynamicObjectBuilder builder(dump);
    EXPECT_FALSE(object.visitTrie(object.getRoot(), builder));
    EXPECT_EQ(2, dump.getInt("handle"));
}

TEST_F(DynamicObjectTrieTest, ScalarWritesAllocateNothingButNodes)
{
    DynamicObject object;
    object.setString("name", "speed");
    const unsigned int x = object.addProperty("x");
    const unsigned long long count = allocator::Allocator::instance().getAllocationCount();
    object.setInt(x, 1);
    object.setReal(x, 2.5);
    object.setBool(x, true);
    object.setString(x, "speed");
    EXPECT_STREQ("speed", object.getString(x));
    EXPECT_EQ(count, allocator::Allocator::instance().getAllocationCount());
}

} // namespace
} // namespace utils
} // namespace tov
