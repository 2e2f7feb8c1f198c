// The public face of DynamicObject: the path grammar, types, arrays, children, values and copies.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicValue.h>
#include <tov/utils/StringTable.h>

#include <gtest/gtest.h>

#include <functional>

#include <climits>
#include <cmath>
#include <string>
#include <utility>

namespace tov {
namespace utils {
namespace {

using testing::AssertionTest;
using testing::snapshotTrie;
using testing::walkKeys;

class DynamicObjectPropertiesTest : public AssertionTest {
protected:
    unsigned int root() const { return object.getRoot(); }
    DynamicObject object;
};

TEST_F(DynamicObjectPropertiesTest, WellFormedPathsLandOnTheNamedProperty)
{
    struct Case {
        const char* key;
        const char* foundAs;
    };
    const Case cases[] = {
        {"a.b.c", "a.b.c"},
        {"a.", "a"},
        {"", ""},
        {"ab[0]", "ab[0]"},
        {"list[2]", "list[2]"},
        {"ab[0].x", "ab[0].x"},
        {"mm[1][2]", "mm[1][2]"},
        {"mm[1][2].y.z", "mm[1][2].y.z"},
        // The closing bracket of an empty pair is passed over and the rest taken as a name.
        {"ab[]", "ab.[]"},
    };
    for (const Case& c : cases) {
        DynamicObject fresh;
        const unsigned int property = fresh.addProperty(c.key);
        EXPECT_NE(0u, property) << c.key;
        EXPECT_EQ(fresh.getProperty(c.foundAs), property) << c.key;
        EXPECT_EQ(property, fresh.addProperty(c.key)) << "a second time " << c.key;
    }
}

// A path that begins as the last one did starts where that one ended; whatever frees, moves or renames
// nodes in between must not leave it starting at a handle that now holds something else.
TEST_F(DynamicObjectPropertiesTest, APathAfterAChangeOfShapeLandsWhereAFreshWalkLands)
{
    const auto changes = std::vector<std::function<void(DynamicObject&)>>{
        [](DynamicObject& o) { ASSERT_TRUE(o.eraseChild(o.getRoot(), "a")); },
        [](DynamicObject& o) { o.resetProperty("a"); },
        [](DynamicObject& o) { o.setInt("a", 7); },
        [](DynamicObject& o) { ASSERT_NE(0u, o.renameChild(o.getRoot(), "a", "w")); },
        [](DynamicObject& o) { ASSERT_TRUE(o.eraseChild("a.l", 0u)); },
        [](DynamicObject& o) { ASSERT_TRUE(o.resize("a.l", 1)); },
        [](DynamicObject& o) { o.clear(); },
    };
    for (std::size_t change = 0; change < changes.size(); ++change) {
        DynamicObject shaped;
        shaped.setInt("a.l[1].b.c", 1);
        shaped.setInt("a.l[2].b.c", 1);
        shaped.setInt("a.l[2].b.d", 2); // the walk to "a.l[2].b" is kept
        changes[change](shaped);
        // Freed nodes are handed out again, for other paths.
        shaped.setInt("x.y.z", 3);
        shaped.setInt("x.l[0].y", 4);
        const unsigned int added = shaped.addProperty("a.l[2].b.e");
        EXPECT_EQ(shaped.getProperty("a.l[2].b.e"), added) << "change " << change;
        EXPECT_EQ(type::integer, shaped.getType("x.y.z")) << "change " << change;
        EXPECT_EQ(1u, shaped.countChildren("x.y")) << "change " << change;
    }
}

TEST_F(DynamicObjectPropertiesTest, MalformedPathsGiveZeroWithoutAssertion)
{
    const char* keys[] = {"a..b",
                          ".a",
                          "a]",
                          "a.]",
                          "a.b]",
                          "a[x]",
                          "a[-1]",
                          "ab[1]]",
                          "ab[100000]",
                          "ab[4294967297]",
                          "ab[99999999999999999999]"};
    for (const char* key : keys) {
        DynamicObject fresh;
        EXPECT_EQ(0u, fresh.addProperty(key)) << key;
    }
    EXPECT_EQ("Null string given as a key", assertionOf([&] { object.addProperty(nullptr); }));
}

TEST_F(DynamicObjectPropertiesTest, PathsIntoValuesOfAnotherKindGiveZeroAndChangeNothing)
{
    object.setInt("a", 5);
    object.setInt("arr[1]", 2);
    // Random paths into values of another kind are compared with a plain tree in the differential test.
    const char* keys[] = {"a.b.c", "a[0]", "arr.x.y", "arr[1][0]"};
    for (const char* key : keys) {
        EXPECT_EQ(0u, object.addProperty(key)) << key;
    }
    EXPECT_EQ(5, object.getInt("a"));
    EXPECT_EQ(2u, object.countChildren("arr"));
    EXPECT_EQ("Invalid property", assertionOf([&] { object.setInt("a.b", 1); }));
    // A null property becomes what the path needs.
    object.resetProperty("a");
    object.setInt("a.b", 1);
    EXPECT_EQ(type::object, object.getType("a"));
}

TEST_F(DynamicObjectPropertiesTest, AOneCharacterFirstPartBeforeABracketMakesTheRootTheArray)
{
    const unsigned int element = object.addProperty("a[0]");
    EXPECT_EQ(type::array, object.getType(root()));
    EXPECT_EQ(1u, object.countChildren(root()));
    EXPECT_EQ(object.getProperty("[0]"), element);
    EXPECT_FALSE(object.hasProperty("a"));
    DynamicObject withChildren;
    withChildren.setInt("x", 1);
    EXPECT_EQ(0u, withChildren.addProperty("a[0]"));
}

TEST_F(DynamicObjectPropertiesTest, TypeCompatibility)
{
    object.setInt("i", 1);
    object.setReal("r", 1.5);
    object.setString("s", "x");
    object.setBool("b", false);
    object.setInt("arr[0]", 1);
    object.setInt("obj.x", 1);
    object.addProperty("n");
    struct Case {
        const char* key;
        bool integer, real, string, boolean, array, object;
    };
    const Case cases[] = {
        {"i", true, true, false, false, false, false},    {"r", true, true, false, false, false, false},
        {"s", false, false, true, false, false, false},   {"b", false, false, false, true, false, false},
        {"arr", false, false, false, false, true, false}, {"obj", false, false, false, false, false, true},
        {"n", true, true, true, true, true, true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.integer, object.isTypeCompatible(c.key, type::integer)) << c.key;
        EXPECT_EQ(c.real, object.isTypeCompatible(c.key, type::real)) << c.key;
        EXPECT_EQ(c.string, object.isTypeCompatible(c.key, type::string)) << c.key;
        EXPECT_EQ(c.boolean, object.isTypeCompatible(c.key, type::boolean)) << c.key;
        EXPECT_EQ(c.array, object.isTypeCompatible(c.key, type::array)) << c.key;
        EXPECT_EQ(c.object, object.isTypeCompatible(c.key, type::object)) << c.key;
        EXPECT_TRUE(object.isTypeCompatible(c.key, type::null) == (c.key[0] == 'n')) << c.key;
    }
    EXPECT_TRUE(object.isTypeCompatible("n", static_cast<type::Type>(42)));
}

TEST_F(DynamicObjectPropertiesTest, ReadersConvertNumbersAndAssertOnOtherKinds)
{
    object.setInt("i", -7);
    object.setReal("r", 2.9);
    object.setReal("negative", -2.9);
    object.setReal("huge", 1e300);
    object.setReal("nan", std::nan(""));
    object.setString("s", "text");
    object.setBool("t", true);
    object.addProperty("n");
    EXPECT_EQ(-7, object.getInt("i"));
    EXPECT_EQ(-7.0, object.getReal("i"));
    EXPECT_EQ(2, object.getInt("r"));
    EXPECT_EQ(-2, object.getInt("negative"));
    EXPECT_EQ(LLONG_MAX, object.getInt("huge"));
    EXPECT_EQ(0, object.getInt("nan"));
    EXPECT_STREQ("text", object.getString("s"));
    EXPECT_EQ(StringTable::computeHash("text", 4, 100), object.getStringHash("s"));
    EXPECT_TRUE(object.getBool("t"));

    EXPECT_EQ("Not an integer or a compatible type", assertionOf([&] { object.getInt("s"); }));
    EXPECT_EQ("Not an integer or a compatible type", assertionOf([&] { object.getInt("t"); }));
    EXPECT_EQ("Not an integer or a compatible type", assertionOf([&] { object.getInt("n"); }));
    EXPECT_EQ("Not a real or a compatible type", assertionOf([&] { object.getReal("s"); }));
    EXPECT_EQ("Not a boolean or a compatible type", assertionOf([&] { object.getBool("i"); }));
    EXPECT_EQ("Not a string or a compatible type", assertionOf([&] { object.getStringHash("r"); }));
    EXPECT_EQ("Not a string or a compatible type", assertionOf([&] { object.getString("n"); }));
    EXPECT_EQ("Unable to find property for the key 'nope'", assertionOf([&] { object.getInt("nope"); }));
    EXPECT_EQ("Unable to find property for the key 'no'", assertionOf([&] { object.getType("nope", 2); }));
    EXPECT_EQ("Null string given as a key", assertionOf([&] { object.getReal(nullptr); }));
    EXPECT_EQ("Invalid property", assertionOf([&] { object.countChildren(0u); }));
}

TEST_F(DynamicObjectPropertiesTest, KeyFormsWithALengthNeedNoTerminator)
{
    const char text[] = "pos.xyz";
    object.setInt(text, 5, 4); // "pos.x"
    EXPECT_EQ(4, object.getInt("pos.x"));
    EXPECT_TRUE(object.hasProperty(text, 5));
    EXPECT_FALSE(object.hasProperty(text, 6));
    object.setString("name", 4, "speedy", 5);
    EXPECT_STREQ("speed", object.getString("name"));
    object.setReal(text, 3, 1.0); // "pos" becomes a real: its child goes
    EXPECT_FALSE(object.hasProperty("pos.x"));
}

// Growing, shrinking and emptying are compared with a plain tree in the differential test.
TEST_F(DynamicObjectPropertiesTest, ErasingAnElementShiftsContentAndKeepsHandlesAndResizeRefusesTheMaximumSize)
{
    object.setString("list[0]", "a");
    object.setString("list[1]", "b");
    object.setInt("list[2].x", 3);
    const unsigned int list = object.getProperty("list");
    const unsigned int first = object.getProperty("list[0]");
    const unsigned int second = object.getProperty("list[1]");
    const unsigned int x = object.getProperty("list[2].x");
    const unsigned int valueOfB = snapshotTrie(object, root()).at(second).equal;

    ASSERT_TRUE(object.eraseChild(list, 0u));
    EXPECT_EQ(first, object.getProperty("list[0]"));
    EXPECT_EQ(second, object.getProperty("list[1]"));
    EXPECT_STREQ("b", object.getString("list[0]"));
    // Moved by relinking: the nodes are those of before.
    EXPECT_EQ(valueOfB, snapshotTrie(object, root()).at(first).equal);
    EXPECT_EQ(x, object.getProperty("list[1].x"));
    ASSERT_TRUE(object.eraseChild("list", 4, 0u));
    EXPECT_TRUE(object.resize(list, 3));
    EXPECT_FALSE(object.resize(list, 100000));
    EXPECT_EQ(3u, object.countChildren(list));
    object.setInt("i", 1);
    EXPECT_EQ("Not an array.", assertionOf([&] { object.eraseChild("i", 0u); }));
    EXPECT_EQ("Can't resize a property that is not an array.", assertionOf([&] { object.resize("i", 2); }));
}

TEST_F(DynamicObjectPropertiesTest, ElementsInOneWalkAreThoseOfGetChild)
{
    // Elements whose keys share digits, one with children, a sibling that extends the array's name, and a
    // count beyond the elements; then an element erased, as the writers meet arrays.
    for (unsigned int i = 0; i < 23; ++i) {
        object.setInt(("list[" + std::to_string(i) + "]").c_str(), i);
    }
    object.resetProperty("list[12]");
    object.setInt("list[12].x", 1);
    object.setInt("list-b", 2);
    const unsigned int list = object.getProperty("list");
    for (int round = 0; round < 2; ++round) {
        unsigned int elements[26];
        object.getElements(list, elements, 26);
        for (unsigned int i = 0; i < 26; ++i) {
            EXPECT_EQ(object.getChild(list, i), elements[i]) << i;
        }
        ASSERT_TRUE(object.eraseChild(list, 5u));
    }
    unsigned int none[2] = {7, 7};
    object.getElements(object.getProperty("list-b"), none, 2);
    EXPECT_EQ(0u, none[0] + none[1]);
}

// Children by index in key order are compared with a plain tree in the differential test.
TEST_F(DynamicObjectPropertiesTest, ErasingChildrenByNameAndChildrenByPathWithTheirContract)
{
    object.setInt("o.a", 1);
    unsigned int o = object.getProperty("o");
    EXPECT_FALSE(object.eraseChild(o, ""));
    EXPECT_FALSE(object.eraseChild(root(), ""));
    EXPECT_TRUE(object.eraseChild("o", "a"));
    EXPECT_EQ(type::null, object.getType(o));
    EXPECT_TRUE(object.eraseChild(root(), "o"));
    EXPECT_TRUE(object.empty());
    EXPECT_EQ(2u, snapshotTrie(object, root()).size());

    object.setInt("o.a", 2);
    object.setInt("o.ab.deep", 3);
    o = object.getProperty("o");
    EXPECT_EQ(0u, object.getChild(o, 2u));
    EXPECT_EQ(object.getProperty("o.ab.deep"), object.getChild(o, "ab.deep"));
    EXPECT_EQ(0u, object.getChild(o, ""));
    EXPECT_TRUE(object.hasChild("o", "a"));
    EXPECT_FALSE(object.hasChild("o", "c"));
    EXPECT_FALSE(object.hasChild("missing", "a"));
    EXPECT_EQ(0u, object.getChild(object.getProperty("o.a"), 0u));
    EXPECT_EQ(object.getProperty("o.a"), object.addChild(o, "a"));
    EXPECT_EQ(2u, object.countChildren(o));
    EXPECT_EQ("The given property is not an object.", assertionOf([&] { object.addChild("o.a", "x"); }));
    EXPECT_EQ("The given child key, x.y is invalid.", assertionOf([&] { object.addChild(o, "x.y"); }));
}

TEST_F(DynamicObjectPropertiesTest, AddChildAddsNothingWhenTheAssertionFunctionReturns)
{
    setAssertionFailedFunction([](const char*, unsigned int, const char*) {});
    object.setInt("v", 1);
    EXPECT_EQ(0u, object.addChild(object.getProperty("v"), "x"));
    EXPECT_EQ(0u, object.addChild(root(), "x.y"));
    EXPECT_EQ(type::integer, object.getType("v"));
    EXPECT_EQ(1u, object.countChildren(root()));
    EXPECT_EQ((std::vector<std::string>{"", "v"}), walkKeys(object, 0));
}

TEST_F(DynamicObjectPropertiesTest, ASiblingExtendingTheNameCountsAsAChildWhenIndexed)
{
    object.setInt("ab.x", 1);
    object.setInt("abc", 2);
    const unsigned int ab = object.getProperty("ab");
    EXPECT_EQ(1u, object.countChildren(ab));
    EXPECT_EQ(object.getProperty("abc"), object.getChild(ab, 1u));
}

TEST_F(DynamicObjectPropertiesTest, RenameMovesTheSubtreeWithoutCopyingAndChecksItsArguments)
{
    object.setInt("p.old.x", 1);
    object.setInt("p.old.y[1]", 2);
    object.setInt("p.other", 3);
    object.setInt("v", 0);
    const unsigned int p = object.getProperty("p");
    const unsigned int x = object.getProperty("p.old.x");
    const unsigned int renamed = object.renameChild(p, "old", "new");
    EXPECT_EQ(object.getProperty("p.new"), renamed);
    EXPECT_EQ(x, object.getProperty("p.new.x"));
    EXPECT_EQ((std::vector<std::string>{"", "new", "new.x", "new.y", "new.y[0]", "new.y[1]", "other"}),
              walkKeys(object, p));
    EXPECT_EQ(renamed, object.renameChild(p, "new", "new"));

    EXPECT_EQ("No given name for the child to rename.", assertionOf([&] { object.renameChild(p, "", "c"); }));
    EXPECT_EQ("The given child key, 'c.d' is invalid.", assertionOf([&] { object.renameChild(p, "new", "c.d"); }));
    EXPECT_EQ("The given property is not an object having children.",
              assertionOf([&] { object.renameChild(object.getProperty("v"), "a", "c"); }));
    EXPECT_EQ("The given property has no child named 'z'.", assertionOf([&] { object.renameChild(p, "z", "c"); }));
    EXPECT_EQ("The given property already has a child named 'other'",
              assertionOf([&] { object.renameChild(p, "new", "other"); }));
}

TEST_F(DynamicObjectPropertiesTest, RenameOntoALeftoverSplitNodeKeepsTheSiblingsHangingThere)
{
    object.setInt("ab", 1);
    object.setInt("ab-c", 2);
    object.setInt("q.x", 3);
    // "ab" goes, but its split node stays: the "-" of "ab-c" hangs on its greater link.
    ASSERT_TRUE(object.eraseChild(root(), "ab"));
    object.renameChild(root(), "q", "ab");
    EXPECT_EQ(3, object.getInt("ab.x"));
    EXPECT_EQ(2, object.getInt("ab-c"));
    // And once more over the separator left behind by the first rename.
    object.renameChild(root(), "ab", "q");
    object.renameChild(root(), "q", "ab");
    EXPECT_EQ(3, object.getInt("ab.x"));
    EXPECT_EQ(2, object.getInt("ab-c"));
}

TEST_F(DynamicObjectPropertiesTest, ResetPropertyFreesTheSubtreeKeepsThePropertyAndEndsWithASiblingExtendingTheName)
{
    // The walk over "a" also meets the tail "-" of "a-", which is no child of "a": the reset passes over
    // it instead of looking for it forever.
    object.setInt("a.x", 1);
    object.setInt("a.y", 2);
    object.setInt("a-", 3);
    object.resetProperty("a");
    EXPECT_EQ(type::null, object.getType("a"));
    EXPECT_FALSE(object.hasProperty("a.x"));
    EXPECT_FALSE(object.hasProperty("a.y"));
    EXPECT_EQ(3, object.getInt("a-"));

    // The same with the sibling put first.
    object.setInt("b-", 4);
    object.setInt("b.x", 5);
    object.resetProperty("b");
    EXPECT_FALSE(object.hasProperty("b.x"));
    EXPECT_EQ(4, object.getInt("b-"));
    EXPECT_TRUE(object.hasProperty("b"));

    // The subtree is freed and the property kept as null.
    object.setInt("keep", 1);
    const std::size_t before = snapshotTrie(object, root()).size();
    object.setInt("t.list[3].x", 1);
    object.setString("t.name", "x");
    object.resetProperty("t");
    EXPECT_TRUE(object.hasProperty("t"));
    EXPECT_EQ(type::null, object.getType("t"));
    // What is left is "keep" and the chain, split and value of "t".
    EXPECT_EQ(before + 3, snapshotTrie(object, root()).size());
    object.resetProperty("missing");
    object.resetProperty(0u);
}

TEST_F(DynamicObjectPropertiesTest, ResetPropertyEndsWhenAWalkCannotReachTheChildren)
{
    // A root that was an array keeps a leftover "[" chain when a renamed child left nodes in an element;
    // the walk from the root climbs back over that "[" with no depth counted and stops, short of the
    // children that the root has as an object now. The reset ends instead of looking for them forever.
    object.setInt("[0].ab.x", 1);
    object.renameChild(object.getProperty("[0]"), "ab", "cd");
    object.resize(root(), 0);
    object.setInt("zz", 2);
    object.resetProperty(root());
    EXPECT_EQ(type::null, object.getType(root()));
    EXPECT_EQ((std::vector<std::string>{""}), walkKeys(object, 0));
    object.clear();
    EXPECT_FALSE(object.hasProperty("zz"));
}

TEST_F(DynamicObjectPropertiesTest, ValuesThroughDynamicValue)
{
    object.setValue("i", DynamicValue(3));
    object.setValue("r", DynamicValue(1.5));
    object.setValue("s", DynamicValue("te\0xt", 5));
    object.setValue("b", DynamicValue(true));
    object.setInt("n", 1);
    object.setValue("n", DynamicValue());
    DynamicValue value;
    const std::pair<const char*, DynamicValue> expected[] = {
        {"i", DynamicValue(3)}, {"r", DynamicValue(1.5)}, {"s", DynamicValue("te")}, {"b", DynamicValue(true)}};
    for (const auto& e : expected) {
        object.retrieveValue(e.first, value);
        EXPECT_EQ(e.second, value) << e.first;
    }
    object.retrieveValue("n", value);
    EXPECT_EQ(type::null, value.getType());
    object.setInt("arr[0]", 1);
    value.setInt(9);
    EXPECT_EQ("5 is an unknown tov::utils::type", assertionOf([&] { object.retrieveValue("arr", value); }));
}

class DynamicObjectCopyTest : public DynamicObjectPropertiesTest {
protected:
    DynamicObjectCopyTest()
    {
        source.setInt("o.x", 1);
        source.setString("o.name", "from source");
        source.setInt("arr[0]", 10);
        source.setInt("arr[2]", 12);
        source.setBool("flag", true);
        source.setReal("r", 0.25);
    }
    DynamicObject source;
};

TEST_F(DynamicObjectCopyTest, PutMergesObjectsAndResizesArraysByHandleOrByKeysAndANullSourceAddsNothing)
{
    object.setInt("o.y", 2);
    object.setInt("o.x", 7);
    object.setInt("arr[4]", 99);
    object.setInt("arr[1]", 11);
    object.put(root(), source);
    EXPECT_EQ(1, object.getInt("o.x"));
    EXPECT_EQ(2, object.getInt("o.y"));
    EXPECT_STREQ("from source", object.getString("o.name"));
    EXPECT_EQ(3u, object.countChildren("arr"));
    // A null element of the source leaves the target's in place.
    EXPECT_EQ(11, object.getInt("arr[1]"));
    EXPECT_TRUE(object.getBool("flag"));
    EXPECT_EQ(0.25, object.getReal("r"));
    // Strings go as text into the target's own table.
    EXPECT_NE(source.getString("o.name"), object.getString("o.name"));

    // By keys, and of a null source, which changes nothing.
    object.put("copy", source, "o");
    EXPECT_EQ(1, object.getInt("copy.x"));
    object.put("whole", 5, source);
    EXPECT_EQ(12, object.getInt("whole.arr[2]"));
    object.put("part.one", 8, source, "arr[2]", 6);
    EXPECT_EQ(12, object.getInt("part.one"));
    const std::vector<std::string> before = walkKeys(object, 0);
    DynamicObject empty;
    object.put(root(), empty);
    object.put("copy", empty);
    EXPECT_EQ(before, walkKeys(object, 0));
}

TEST_F(DynamicObjectCopyTest, RetrieveCopiesASubtreeToTheTargetRoot)
{
    source.retrieve("o", object);
    EXPECT_EQ(1, object.getInt("x"));
    EXPECT_STREQ("from source", object.getString("name"));
    DynamicObject scalar;
    source.retrieve("r", scalar);
    EXPECT_EQ(0.25, scalar.getReal(scalar.getRoot()));
    DynamicObject array;
    source.retrieve("arr", array);
    EXPECT_EQ(3u, array.countChildren(array.getRoot()));
    EXPECT_EQ(12, array.getInt("[2]"));
    // Kept: an unknown key copies everything.
    DynamicObject all;
    source.retrieve("unknown", all);
    EXPECT_EQ(walkKeys(source, 0), walkKeys(all, 0));
    EXPECT_TRUE(all.getBool("flag"));
}

} // namespace
} // namespace utils
} // namespace tov
