// DynamicObjectIterator: order, keys, depth, and the walk's bounds.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectIterator.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace tov {
namespace utils {
namespace {

using testing::AssertionTest;
using testing::walkKeys;
using Keys = std::vector<std::string>;

class DynamicObjectIteratorTest : public AssertionTest {
protected:
    DynamicObject object;
};

// The keys of a walk from the root, each one checked to lead back to the entry's handle and to end there.
Keys checkedKeys(const DynamicObject& object)
{
    Keys keys;
    for (DynamicObjectIterator it(object, 0); !it.end(); it.next()) {
        keys.emplace_back(it.getKey(), it.getKeyLength());
        EXPECT_EQ(object.getProperty(it.getKey(), it.getKeyLength()), it.getProperty()) << keys.back();
        EXPECT_EQ('\0', it.getKey()[it.getKeyLength()]);
    }
    return keys;
}

TEST_F(DynamicObjectIteratorTest, AnEmptyObjectAScalarOrAMissingStartGiveTheStartOnlyOrNothing)
{
    DynamicObjectIterator it(object, 0);
    ASSERT_FALSE(it.end());
    EXPECT_EQ(object.getRoot(), it.getProperty());
    EXPECT_EQ(0u, it.getKeyLength());
    EXPECT_STREQ("", it.getKey());
    EXPECT_EQ(&object, &it.getDynamicObject());
    it.next();
    EXPECT_TRUE(it.end());
    EXPECT_EQ(0u, it.getProperty());

    // From a scalar the walk gives the start only; from a node that is no property, nothing.
    object.setInt("v", 1);
    EXPECT_EQ((Keys{""}), walkKeys(object, object.getProperty("v")));
    // 4 v, 5 split, 6 value: a value node is no property.
    DynamicObjectIterator missing(object, 6);
    EXPECT_TRUE(missing.end());
    EXPECT_EQ("unable to increment from invalid current node", assertionOf([&] { missing.next(); }));
}

TEST_F(DynamicObjectIteratorTest, PropertiesComeBeforeTheirDescendantsAndSiblingsByBytes)
{
    object.setInt("b", 1);
    object.setInt("a.x", 2);
    object.setInt("a.c", 3);
    EXPECT_EQ((Keys{"", "a", "a.c", "a.x", "b"}), checkedKeys(object));
    EXPECT_EQ((Keys{"", "a", "b"}), walkKeys(object, 0, 0));
    EXPECT_EQ((Keys{"", "c", "x"}), walkKeys(object, object.getProperty("a")));
}

TEST_F(DynamicObjectIteratorTest, DepthCountsSeparatorsBelowTheFirst)
{
    object.setInt("a.b.c.d", 1);
    object.setInt("a.l[1].m", 2);
    const unsigned int a = object.getProperty("a");
    EXPECT_EQ((Keys{"", "b", "l"}), walkKeys(object, a, 0));
    EXPECT_EQ((Keys{"", "b", "b.c", "l", "l[0]", "l[1]"}), walkKeys(object, a, 1));
    EXPECT_EQ((Keys{"", "b", "b.c", "b.c.d", "l", "l[0]", "l[1]", "l[1].m"}), walkKeys(object, a, 2));
    EXPECT_EQ(walkKeys(object, a, 2), walkKeys(object, a));
    EXPECT_EQ((Keys{"", "a", "a.b", "a.l"}), walkKeys(object, 0, 1));
}

TEST_F(DynamicObjectIteratorTest, ArrayKeysSortAsText)
{
    object.resize(object.addProperty("list"), 12);
    const Keys keys = walkKeys(object, object.getProperty("list"));
    EXPECT_EQ((Keys{"", "[0]", "[10]", "[11]", "[1]", "[2]", "[3]", "[4]", "[5]", "[6]", "[7]", "[8]", "[9]"}), keys);
    // By index the order is numeric.
    for (unsigned int i = 0; i < 12; ++i) {
        const std::string key = "list[" + std::to_string(i) + "]";
        EXPECT_EQ(object.getProperty(key.c_str()), object.getChild(object.getProperty("list"), i));
    }
}

TEST_F(DynamicObjectIteratorTest, TheWalkFollowsTrieLinksNotPaths)
{
    // The split node of "ab" carries the "-" of its sibling "ab-c" on its greater side: a walk from "ab"
    // gives that sibling too, by the tail of its name.
    object.setInt("ab", 1);
    object.setInt("ab-c", 2);
    EXPECT_EQ((Keys{"", "-c"}), walkKeys(object, object.getProperty("ab")));
    EXPECT_EQ((Keys{"", "ab", "ab-c"}), walkKeys(object, 0));
}

TEST_F(DynamicObjectIteratorTest, ASeparatorEnteredFromItsLessSideIsNotCountedAsADepth)
{
    // "." of "a" has the "-" of "a-" on its less side: the walk reaches the children of "a" on the way
    // back from "-", a route that does not count depth, and lowers it again on the way out.
    object.setInt("a.x.y", 1);
    object.setInt("a-", 2);
    object.setInt("b", 3);
    EXPECT_EQ((Keys{"", "a", "a-", "a.x"}), walkKeys(object, 0, 0));
    // Leaving "." with no depth to give back ends the walk: "b" is not reached.
    EXPECT_EQ((Keys{"", "a", "a-", "a.x", "a.x.y"}), walkKeys(object, 0));
    DynamicObject flat;
    flat.setInt("a.x", 1);
    flat.setInt("a-", 2);
    flat.setInt("b", 3);
    EXPECT_EQ((Keys{"", "a", "a-", "a.x"}), walkKeys(flat, 0));
    EXPECT_EQ(3, flat.getInt("b"));
}

TEST_F(DynamicObjectIteratorTest, NamesContinuedByBytesFrom0x80ComeFirstWhateverTheOrderOfInsertion)
{
    object.setInt("a\xC3\xA9", 1);
    object.setInt("a", 2);
    object.setInt("a\xC3\xA8", 3);
    // Signed bytes: 0xC3 sorts below the 0 that ends "a".
    EXPECT_EQ((Keys{"", "a\xC3\xA8", "a\xC3\xA9", "a"}), checkedKeys(object));
    object.clear();
    object.setInt("a", 2);
    object.setInt("a\xC3\xA9", 1);
    EXPECT_EQ((Keys{"", "a\xC3\xA9", "a"}), checkedKeys(object));
}

} // namespace
} // namespace utils
} // namespace tov
