#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/StringTable.h>

#include "support/AssertionGuard.h"

#include <cstring>
#include <string>

using namespace tov::utils;

namespace {

class StringTables : public tov::testing::AssertionTest {};

unsigned long long hashOf(const char* text, unsigned int seed)
{
    return StringTable::computeHash(text, static_cast<unsigned int>(std::strlen(text)), seed);
}

} // namespace

TEST(MurmurHash64B, GivesTheReferenceResults)
{
    struct Case {
        const char* text;
        unsigned int seed;
        unsigned long long hash;
    };
    const Case cases[] = {
        {"", 0, 0ULL},
        {"", 100, 0x6b86284c51263eafULL},
        {"a", 0, 0x716e41e3dff50b85ULL},
        {"a", 100, 0x5f721026777ee2ecULL},
        {"abc", 100, 0x40bd9780a3fa0b37ULL},
        {"hello world", 100, 0x49e07d84a3a2b7deULL},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.hash, hashOf(c.text, c.seed)) << '"' << c.text << "\" seed " << c.seed;
    }
}

TEST(MurmurHash64B, EveryTailLengthReachesTheResult)
{
    // Lengths 0 to 16 cover every combination of 8-byte groups, the 4-byte word and the 1 to 3 byte
    // tail: each added byte must change the hash, and the hash must not depend on bytes past the length.
    const char text[] = "0123456789abcdefXYZ";
    unsigned long long previous = hashOf("", 7);
    for (unsigned int length = 1; length <= 16; ++length) {
        const unsigned long long hash = StringTable::computeHash(text, length, 7);
        EXPECT_NE(previous, hash) << length;
        std::string copy(text, length);
        copy += "#";
        EXPECT_EQ(hash, StringTable::computeHash(copy.data(), length, 7)) << length;
        previous = hash;
    }
}

TEST_F(StringTables, AddsOnceRetrievesByHashAndChecksReportUnknownTextsAndCollisions)
{
    StringTable table(100);
    const unsigned long long hash = table.add("speed", nullptr);
    EXPECT_EQ(hashOf("speed", 100), hash);
    EXPECT_EQ(hash, table.add("speed", nullptr));
    EXPECT_EQ(hash, table.add("speedometer", 5, nullptr)); // pointer with length
    EXPECT_STREQ("speed", table.retrieve(hash, "none"));
    EXPECT_STREQ("none", table.retrieve(0, "none"));
    EXPECT_STREQ("none", table.retrieve(12345, "none"));
    EXPECT_EQ(hash, table.hash("speed", nullptr));
    EXPECT_TRUE(table.check("speed", hash, nullptr));
    const unsigned long long empty = table.add("", nullptr);
    EXPECT_NE(0u, empty);
    EXPECT_STREQ("", table.retrieve(empty, "none"));

    // A check reports a text the table does not know, and one that differs from the text under its hash.
    BufferLogger log(false, false, false);
    EXPECT_FALSE(table.check("beta", hashOf("beta", 100), &log));
    EXPECT_FALSE(table.check("gamma", hash, &log));
    EXPECT_FALSE(table.check("spee", 4, hash, &log));
    ASSERT_EQ(3u, log.getMessages().size());
    EXPECT_EQ("\"beta\" is not registered with the table.", log.getMessages()[0].message);
    EXPECT_EQ(error::invalidConfiguration, log.getMessages()[0].errorType);
    EXPECT_EQ("\"gamma\" and \"speed\" (seed=100).", log.getMessages()[1].message);
    EXPECT_EQ(error::stringHashCollision, log.getMessages()[1].errorType);
    EXPECT_EQ("\"spee\" and \"speed\" (seed=100).", log.getMessages()[2].message);
}

TEST_F(StringTables, TheEmptyTextUnderSeedZeroIsStoredButCountsAsAbsent)
{
    StringTable table(0);
    EXPECT_EQ(0u, table.add("", nullptr));
    EXPECT_FALSE(table.empty());
    EXPECT_STREQ("default", table.retrieve(0, "default"));
    EXPECT_TRUE(table.check("", 0, nullptr));
}

TEST_F(StringTables, HashOfAnUnknownTextIsAnAssertion)
{
    StringTable table(100);
    EXPECT_ASSERTION(static_cast<void>(table.hash("missing", nullptr)), "\"missing\" does not belong to the table.");
    EXPECT_ASSERTION(table.add(nullptr, nullptr), "Bad string.");
    table.add("x", nullptr);
    EXPECT_ASSERTION(table.setSeed(5), "Can't change the seed of a non-empty table.");
    table.clear();
    table.setSeed(5);
    EXPECT_EQ(5u, table.getSeed());
}

TEST_F(StringTables, CopiesAreDeep)
{
    StringTable source(100);
    const unsigned long long hash = source.add("shared text", nullptr);
    StringTable copy(source);
    StringTable assigned(3);
    assigned.add("replaced", nullptr);
    assigned = source;
    EXPECT_EQ(100u, assigned.getSeed());
    for (const StringTable* table : {&copy, &assigned}) {
        EXPECT_STREQ("shared text", table->retrieve(hash, nullptr));
        EXPECT_NE(source.retrieve(hash, nullptr), table->retrieve(hash, nullptr));
    }
    EXPECT_STREQ(nullptr, assigned.retrieve(hashOf("replaced", 3), nullptr));
}

TEST(StringTableMemory, AddingAKnownTextAllocatesNothingAndAClearedTableReusesItsStrings)
{
    StringTable table(100);
    table.add("a fairly long text that would need a buffer of its own if it were copied", nullptr);
    const unsigned long long allocations = tov::allocator::Allocator::instance().getAllocationCount();
    for (int i = 0; i < 100; ++i) {
        table.add("a fairly long text that would need a buffer of its own if it were copied", nullptr);
    }
    EXPECT_EQ(allocations, tov::allocator::Allocator::instance().getAllocationCount());
    // A cleared table reuses its strings.
    table.add("two", nullptr);
    table.clear();
    const unsigned long long liveBlocks = tov::allocator::Allocator::instance().getLiveBlocks();
    table.add("three", nullptr);
    // The String objects come from the pool; only the hash table's vectors are new.
    EXPECT_LE(tov::allocator::Allocator::instance().getLiveBlocks(), liveBlocks + 2);
}
