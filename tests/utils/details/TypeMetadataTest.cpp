#include <tov/utils/Property.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/Vector2.h>
#include <tov/utils/details/TypeMetadata.h>

#include "support/AssertionGuard.h"

using namespace tov::utils;
using details::TypeMetadata;

namespace {

Uuid idOf(unsigned char n)
{
    Uuid id;
    id.data4[7] = n;
    return id;
}

class TypeMetadataTest : public tov::testing::AssertionTest {};

} // namespace

TEST_F(TypeMetadataTest, BasesAreKeptOnceInOrderAndRemovedWithoutReordering)
{
    TypeMetadata root("root", idOf(1)), a("a", idOf(2)), b("b", idOf(3)), leaf("leaf", idOf(4));
    ASSERT_TRUE(a.addBaseType(root, nullptr));
    ASSERT_TRUE(leaf.addBaseType(a, nullptr));
    ASSERT_TRUE(leaf.addBaseType(b, nullptr));
    ASSERT_TRUE(leaf.addBaseType(b, nullptr));
    ASSERT_TRUE(leaf.addBaseType(root, nullptr)); // reached through a already
    ASSERT_EQ(2u, leaf.countBaseTypes());
    EXPECT_EQ(&a, leaf.getBaseType(0));
    EXPECT_EQ(&b, leaf.getBaseType(1));
    leaf.removeBaseType(root); // no direct base: nothing
    leaf.removeBaseType(a);
    ASSERT_EQ(1u, leaf.countBaseTypes());
    EXPECT_EQ(&b, leaf.getBaseType(0));
    EXPECT_FALSE(leaf.isDerivedFrom(root));
    EXPECT_ASSERTION(leaf.getBaseType(1), "Invalid base type index");
}

TEST_F(TypeMetadataTest, KeysWithoutTextOrLength)
{
    TypeManager types;
    ASSERT_TRUE(types.registerBaseTypes(nullptr));
    TypeMetadata pair("pair", idOf(1));
    Property first, second;
    ASSERT_TRUE(first.setAccessors("first", &Vector2<double>::getX, &Vector2<double>::setX, types, nullptr));
    ASSERT_TRUE(second.setAccessors("second", &Vector2<double>::getY, &Vector2<double>::setY, types, nullptr));
    pair.addProperty(first);
    pair.addProperty(second);
    EXPECT_STREQ("first", pair.getProperty("")->getKey());
    EXPECT_STREQ("first", pair.getProperty(nullptr, 0)->getKey());
    EXPECT_EQ(nullptr, pair.getProperty(nullptr));
    EXPECT_EQ(nullptr, pair.getProperty(nullptr, 2));
    EXPECT_NE(&second, pair.getProperty("second")); // a copy
}
