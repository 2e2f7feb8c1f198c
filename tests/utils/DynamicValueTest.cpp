// DynamicValue: kinds, conversions, ownership of text and comparison without conversion.
#include "utils/DynamicObjectTestSupport.h"

#include <tov/allocator/Allocator.h>
#include <tov/utils/DynamicValue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

namespace tov {
namespace utils {
namespace {

using testing::AssertionTest;

class DynamicValueTest : public AssertionTest {};

TEST_F(DynamicValueTest, NumbersConvertAndOtherKindsAssert)
{
    EXPECT_EQ(2, DynamicValue(2.9).getInt());
    EXPECT_EQ(-2, DynamicValue(-2.9).getInt());
    EXPECT_EQ(3.0, DynamicValue(3).getReal());
    EXPECT_EQ(0, DynamicValue(std::nan("")).getInt());
    EXPECT_EQ("Unable the retrieve this value of type 0 as an int", assertionOf([] { DynamicValue().getInt(); }));
    EXPECT_EQ("Unable the retrieve this value of type 4 as an int", assertionOf([] { DynamicValue(true).getInt(); }));
    EXPECT_EQ("Unable the retrieve this value of type 3 as a real", assertionOf([] { DynamicValue("1").getReal(); }));
    EXPECT_EQ("Unable the retrieve this value of type 1 as a bool", assertionOf([] { DynamicValue(1).getBool(); }));
    EXPECT_EQ("Unable the retrieve this value of type 2 as a string",
              assertionOf([] { DynamicValue(1.0).getString(); }));
    EXPECT_EQ("Unable the retrieve this value of type 0 as a string",
              assertionOf([] { DynamicValue().getStringLength(); }));
    EXPECT_EQ("null pointer not allowed as string value initializer for DynamicValue",
              assertionOf([] { DynamicValue(static_cast<const char*>(nullptr)); }));
    EXPECT_EQ("unable to set string value from null pointer", assertionOf([] { DynamicValue().setString(nullptr); }));
}

TEST_F(DynamicValueTest, TextIsOwnedAndFreed)
{
    const unsigned long long before = allocator::Allocator::instance().getLiveBytes();
    {
        DynamicValue text("a text long enough to need a buffer of its own");
        DynamicValue copy(text);
        text.setString("changed");
        EXPECT_STREQ("a text long enough to need a buffer of its own", copy.getString());
        EXPECT_STREQ("changed", text.getString());
        copy.setInt(4);
        EXPECT_EQ(type::integer, copy.getType());
        DynamicValue assigned;
        assigned = text;
        const auto& itself = assigned; // spelled so, the compiler does not object to the case under test
        assigned = itself;
        EXPECT_STREQ("changed", assigned.getString());
        assigned.reset();
        EXPECT_EQ(type::null, assigned.getType());
    }
    EXPECT_EQ(before, allocator::Allocator::instance().getLiveBytes());
}

TEST_F(DynamicValueTest, AZeroByteSurvivesTheCountedFormButNotAssignment)
{
    DynamicValue value("a\0b", 3);
    EXPECT_EQ(3u, value.getStringLength());
    DynamicValue copy;
    copy = value;
    EXPECT_EQ(1u, copy.getStringLength());
}

TEST_F(DynamicValueTest, Compatibility)
{
    const type::Type all[] = {type::null,    type::integer, type::real,  type::string,
                              type::boolean, type::array,   type::object};
    for (type::Type t : all) {
        EXPECT_TRUE(DynamicValue().isTypeCompatible(t));
        EXPECT_EQ(t == type::integer || t == type::real, DynamicValue(1).isTypeCompatible(t));
        EXPECT_EQ(t == type::integer || t == type::real, DynamicValue(1.0).isTypeCompatible(t));
        EXPECT_EQ(t == type::string, DynamicValue("s").isTypeCompatible(t));
        EXPECT_EQ(t == type::boolean, DynamicValue(true).isTypeCompatible(t));
    }
}

TEST_F(DynamicValueTest, ComparisonHasNoConversionAndTheStreamFormsWriteTheValue)
{
    EXPECT_TRUE(DynamicValue("a") == DynamicValue("a"));
    EXPECT_FALSE(DynamicValue() != DynamicValue());
    EXPECT_FALSE(DynamicValue(1) == DynamicValue(1.0));
    EXPECT_TRUE(DynamicValue(1) != DynamicValue(1.0));
    EXPECT_FALSE(DynamicValue(std::nan("")) == DynamicValue(std::nan("")));
    EXPECT_FALSE(DynamicValue(true) == DynamicValue(false));
    EXPECT_FALSE(DynamicValue("a") == DynamicValue("a\0", 2));
    EXPECT_FALSE(DynamicValue() == DynamicValue(0));
    std::ostringstream out;
    out << DynamicValue(-4) << ' ' << DynamicValue(0.5) << ' ' << DynamicValue("t x") << ' ' << DynamicValue(true)
        << ' ' << DynamicValue();
    EXPECT_EQ("-4 0.5 t x 1 null", out.str());
}

} // namespace
} // namespace utils
} // namespace tov
