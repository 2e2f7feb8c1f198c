#include <tov/utils/BufferLogger.h>
#include <tov/utils/Uuid.h>

#include "support/AssertionGuard.h"

#include <sstream>
#include <string>

using namespace tov::utils;

namespace {

std::string textOf(const Uuid& uuid)
{
    char text[37];
    uuid.computeString(text);
    return text;
}

} // namespace

TEST(Uuid, ReadsTheGroupsByPositionChecksTheLengthOnlyAndWritesLowerCase)
{
    Uuid uuid;
    ASSERT_TRUE(uuid.set("0BA23F91-D30E-4574-B0ED-EE0AA81D00B9", nullptr));
    EXPECT_EQ(0x0ba23f91u, uuid.data1);
    EXPECT_EQ(0xd30e, uuid.data2);
    EXPECT_EQ(0x4574, uuid.data3);
    EXPECT_EQ(0xb0, uuid.data4[0]);
    EXPECT_EQ(0xb9, uuid.data4[7]);
    EXPECT_EQ("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9", textOf(uuid));
    std::ostringstream stream;
    stream.width(50);
    stream << uuid;
    EXPECT_EQ("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9", stream.str()); // no padding
    EXPECT_EQ(36u, Uuid::getStringLength());
    // Only the length is checked: the dashes are not looked at.
    Uuid loose;
    EXPECT_TRUE(loose.set("0ba23f91xd30ex4574xb0edxee0aa81d00b9", nullptr));
    EXPECT_EQ("0ba23f91-d30e-4574-b0ed-ee0aa81d00b9", textOf(loose));
    EXPECT_TRUE(uuid.set("00000000-0000-0000-0000-000000000000", nullptr));
    EXPECT_FALSE(uuid.isValid());
    EXPECT_EQ("00000000-0000-0000-0000-000000000000", textOf(Uuid()));
}

TEST(Uuid, RefusedTextsClearTheValueAndSayWhy)
{
    const char* valid = "0ba23f91-d30e-4574-b0ed-ee0aa81d00b9";
    struct Case {
        const char* text;
        const char* message;
    };
    const Case cases[] = {
        {nullptr, "The given string parameter is NULL"},
        {"0ba23f91-d30e-4574-b0ed-ee0aa81d00b",
         "The given string '0ba23f91-d30e-4574-b0ed-ee0aa81d00b' doesn't have the right format of 36 characters "
         "(\"12345678-9ABC-DEF1-2345-6789ABCDEF12\")."},
        {"0ba23f91-d30e-4574-b0ed-ee0aa81d00b9a",
         "The given string '0ba23f91-d30e-4574-b0ed-ee0aa81d00b9a' doesn't have the right format of 36 characters "
         "(\"12345678-9ABC-DEF1-2345-6789ABCDEF12\")."},
    };
    for (const Case& c : cases) {
        Uuid uuid = Uuid::create(valid);
        BufferLogger log(false, false, false);
        EXPECT_FALSE(uuid.set(c.text, &log));
        EXPECT_FALSE(uuid.isValid());
        ASSERT_EQ(1u, log.getMessages().size());
        EXPECT_EQ(c.message, log.getMessages()[0].message);
        EXPECT_EQ(error::invalidArgument, log.getMessages()[0].errorType);
        uuid = Uuid::create(valid);
        EXPECT_FALSE(uuid.set(c.text, nullptr));
        EXPECT_FALSE(uuid.isValid());
    }
}

TEST(Uuid, OrdersByTheBytesInMemory)
{
    // data1 is little-endian in memory, so its low byte decides first.
    const Uuid lowByteSmall = Uuid::create("ff000000-0000-0000-0000-000000000000");
    const Uuid lowByteLarge = Uuid::create("000000ff-0000-0000-0000-000000000000");
    EXPECT_TRUE(lowByteSmall < lowByteLarge);
    EXPECT_FALSE(lowByteLarge < lowByteSmall);
    EXPECT_NE(lowByteSmall, lowByteLarge);
    EXPECT_EQ(lowByteSmall, Uuid::create("FF000000-0000-0000-0000-000000000000"));
}

class UuidLiterals : public tov::testing::AssertionTest {};

TEST_F(UuidLiterals, AMalformedLiteralIsAnAssertion)
{
    EXPECT_ASSERTION(Uuid::create("not a uuid"),
                     "The given string 'not a uuid' doesn't have the right format of 36 characters "
                     "(\"12345678-9ABC-DEF1-2345-6789ABCDEF12\").");
}
