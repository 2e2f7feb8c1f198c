// ChildWalk against DynamicObjectIterator at depth 0, on random objects whose names extend each other by
// characters on both sides of the separators: the same children with the same keys, in the same order,
// also where the iterator's kept quirks end a walk early, and also with walks nested inside each other.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectIterator.h>
#include <tov/utils/details/ChildWalk.h>

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace tov {
namespace utils {
namespace {

using Children = std::vector<std::pair<std::string, unsigned int>>;

Children iteratorChildren(const DynamicObject& object, unsigned int property)
{
    Children children;
    DynamicObjectIterator it(object, property, 0);
    for (it.next(); !it.end(); it.next()) {
        children.emplace_back(std::string(it.getKey(), it.getKeyLength()), it.getProperty());
    }
    return children;
}

// Walks every object below `property` with walks nested as a writer nests them, listing each object's
// children after its own entry.
void walkNested(const DynamicObject& object, unsigned int property, details::ChildWalk::Room& room, Children& out)
{
    for (details::ChildWalk child(object, property, room); child.next();) {
        const std::string key(child.getKey(), child.getKeyLength());
        EXPECT_EQ('\0', child.getKey()[child.getKeyLength()]);
        out.emplace_back(key, child.getProperty());
        if (object.getType(child.getProperty()) == type::object) {
            walkNested(object, child.getProperty(), room, out);
        }
        EXPECT_EQ(key, std::string(child.getKey(), child.getKeyLength())) << "changed by a nested walk";
    }
}

void iterateNested(const DynamicObject& object, unsigned int property, Children& out)
{
    for (const auto& child : iteratorChildren(object, property)) {
        out.push_back(child);
        if (object.getType(child.second) == type::object) {
            iterateNested(object, child.second, out);
        }
    }
}

void fillRandomly(DynamicObject& object, std::mt19937& random)
{
    // "-" and "!" sort below ".", bytes from 0x80 below 0: names that extend a sibling's name by them
    // show inside the sibling and end walks early.
    static const std::vector<std::string> names = {"a", "a-", "a-c",      "ab",        "b",
                                                   "!", "a!", "\xc3\xa9", "a\xc3\xa9", "z"};
    for (int i = 0; i < 12; ++i) {
        std::string path;
        const int depth = 1 + static_cast<int>(random() % 3);
        for (int level = 0; level < depth; ++level) {
            path += (level == 0 ? "" : ".") + names[random() % names.size()];
            if (random() % 6 == 0) {
                path += "[" + std::to_string(random() % 3) + "]";
            }
        }
        try {
            if (object.getProperty(path.c_str()) == 0 || object.getType(path.c_str()) == type::integer) {
                object.setInt(path.c_str(), i); // an object or array in place keeps its children
            }
        } catch (const std::runtime_error&) {
            // a path through a value of another kind asserts: left out
        }
    }
}

class ChildWalkTest : public testing::AssertionTest {};

TEST_F(ChildWalkTest, GivesTheChildrenOfAnIteratorOfDepthZeroAlsoNestedAndWhereQuirksEndTheWalk)
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        DynamicObject object;
        fillRandomly(object, random);
        for (DynamicObjectIterator it(object, 0); !it.end(); it.next()) {
            const unsigned int property = it.getProperty();
            if (object.getType(property) != type::object) {
                continue;
            }
            details::ChildWalk::Room room;
            Children walked;
            for (details::ChildWalk child(object, property, room); child.next();) {
                walked.emplace_back(std::string(child.getKey(), child.getKeyLength()), child.getProperty());
            }
            ASSERT_EQ(iteratorChildren(object, property), walked) << "round " << round;
            EXPECT_TRUE(room.frames.empty() && room.key.empty());
        }
        details::ChildWalk::Room room;
        Children nested, iterated;
        walkNested(object, 0, room, nested);
        iterateNested(object, 0, iterated);
        ASSERT_EQ(iterated, nested) << "round " << round;
    }
}

} // namespace
} // namespace utils
} // namespace tov
