#include <tov/allocator/Allocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/Memory.h>
#include <tov/utils/RandomManagerSerialization.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using namespace tov::utils;

namespace {

// The saved text, and the buffer released the way a caller must.
char* serializeAny(unsigned int& size, const Random& random)
{
    return serializeRandom(size, random, nullptr);
}
char* serializeAny(unsigned int& size, const RandomManager& manager)
{
    return serializeRandomManager(size, manager, nullptr);
}

template <class Saved>
std::string serialized(const Saved& saved)
{
    unsigned int size = 0;
    char* buffer = serializeAny(size, saved);
    EXPECT_NE(nullptr, buffer);
    std::string text(buffer, size);
    TOV_DELETE_ARRAY(buffer);
    return text;
}

std::string streamText(const char* version, const char* properties)
{
    return std::string("version { ") + version + " }\n" + properties;
}

const char* const current = "major: 0 minor: 4 patch: 0";

} // namespace

TEST(RandomSerialization, WritesTheSeedAndTheCountOfDraws)
{
    struct Case {
        int draws;
        const char* count;
    };
    const Case cases[] = {{0, "0"}, {1, "1"}, {624, "624"}, {625, "625"}, {100000, "100000"}};
    for (const Case& c : cases) {
        Random stream(7);
        for (int i = 0; i < c.draws; ++i) {
            stream();
        }
        EXPECT_EQ(std::string("version {\n  major: 0\n  minor: 4\n  patch: 0\n}\nrandom {\n  seed: 7\n  count: ") +
                      c.count + "\n}\n",
                  serialized(stream));
    }
    RandomManager manager;
    EXPECT_EQ("version {\n  major: 0\n  minor: 4\n  patch: 0\n}\nrandomManager {\n  seed: 268431360\n}\n",
              serialized(manager));
}

TEST(RandomSerialization, HandsOutExactlyTheTextInOneTrackedBuffer)
{
    tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long blocks = memory.getLiveBlocks();
    Random stream(1);
    unsigned int size = 0;
    char* buffer = serializeRandom(size, stream, nullptr);
    ASSERT_NE(nullptr, buffer);
    EXPECT_EQ(std::strlen("version {\n  major: 0\n  minor: 4\n  patch: 0\n}\nrandom {\n  seed: 1\n  count: 0\n}\n"),
              size);
    EXPECT_EQ(blocks + 3, memory.getLiveBlocks()); // the stream's engine and seed, and the buffer
    TOV_DELETE_ARRAY(buffer);
    EXPECT_EQ(blocks + 2, memory.getLiveBlocks());
}

TEST(RandomSerialization, ASavedStreamGoesOnWhereItStoodAndASavedManagerGivesBackItsSeedReadingOnlyTheGivenBytes)
{
    for (int draws : {0, 1, 623, 624, 625, 5000}) {
        Random stream(42);
        for (int i = 0; i < draws; ++i) {
            stream();
        }
        const std::string text = serialized(stream);
        Random restored(1);
        BufferLogger log(true, true, true);
        ASSERT_TRUE(deserializeRandom(text.data(), static_cast<unsigned int>(text.size()), restored, &log)) << draws;
        EXPECT_TRUE(log.getMessages().empty());
        for (int i = 0; i < 700; ++i) {
            ASSERT_EQ(stream(), restored()) << "after " << draws << " draws, word " << i;
        }
        EXPECT_EQ(serialized(stream), serialized(restored));
    }
    RandomManager manager;
    manager.seed(0xDEADBEEF);
    const std::string text = serialized(manager);
    RandomManager restored;
    ASSERT_TRUE(deserializeRandomManager(text.data(), static_cast<unsigned int>(text.size()), restored, nullptr));
    EXPECT_EQ(0xDEADBEEFu, restored.getSeed());

    // The buffer has no terminator: what lies behind `size` must not be read.
    const std::string unterminated = streamText(current, "randomManager { seed: 12 }") + "garbage";
    EXPECT_TRUE(deserializeRandomManager(unterminated.data(), static_cast<unsigned int>(unterminated.size() - 7),
                                         restored, nullptr));
    EXPECT_EQ(12u, restored.getSeed());
    EXPECT_FALSE(deserializeRandomManager(nullptr, 10, restored, nullptr));
}

TEST(RandomSerialization, RefusedTextsLeaveTheStreamAndTheManagerAlone)
{
    struct Case {
        bool manager;
        std::string text;
        const char* message;
    };
    const Case cases[] = {
        {false, "not a message", "Unable to deserialize a random stream: "},
        {false, "random { seed: 3 }", "Unable to deserialize a random stream: random {\n  seed: 3\n}\n"},
        {false, streamText("major: 0 minor: 4 patch: 1", "random { seed: 3 count: 1 }"),
         "Error while deserializing random: The file originates from a version, v0.4.1, that is not compatible "
         "with the current version, v0.4.0."},
        {false, streamText("major: 1 minor: 4 patch: 0", ""),
         "Error while deserializing random: The file originates from a version, v1.4.0, that is not compatible "
         "with the current version, v0.4.0."},
        {false, streamText(current, ""), "Error while deserializing random: expected field random not found"},
        {false, streamText(current, "random { }"), "Error while deserializing random: expected field seed not found"},
        {false, streamText(current, "random { count: 3 }"),
         "Error while deserializing random: expected field seed not found"},
        {false, streamText(current, "random { seed: 3 }"),
         "Error while deserializing random: expected field count not found"},
        {false, streamText(current, "randomManager { seed: 3 }"),
         "Unable to deserialize a random stream: version {\n"
         "  major: 0\n  minor: 4\n  patch: 0\n}\n"},
        // Restoring steps whole rounds from the seed: a count this far would keep the caller busy for
        // ages, and the largest ones do not fit the signed count at all.
        {false, streamText(current, "random { seed: 3 count: 1099511627777 }"),
         "Error while deserializing random: count 1099511627777 is beyond the largest that can be restored, "
         "1099511627776."},
        {false, streamText(current, "random { seed: 3 count: 18446744073709551615 }"),
         "Error while deserializing random: count 18446744073709551615 is beyond the largest that can be "
         "restored, 1099511627776."},
        {true, "}", "Unable to deserialize a random manager: "},
        {true, streamText("major: 0 minor: 3 patch: 0", "randomManager { seed: 1 }"),
         "Error while deserializing random manager: The file originates from a version, v0.3.0, that is not "
         "compatible with the current version, v0.4.0."},
        {true, streamText(current, ""),
         "Error while deserializing random manager: expected field randomManager not found"},
        {true, streamText(current, "randomManager { }"),
         "Error while deserializing random manager: expected field seed not found"},
    };
    for (const Case& c : cases) {
        Random target(5);
        target();
        RandomManager manager;
        manager.seed(9);
        const auto read = [&](AbstractLogger* logger) {
            const unsigned int size = static_cast<unsigned int>(c.text.size());
            return c.manager ? deserializeRandomManager(c.text.data(), size, manager, logger)
                             : deserializeRandom(c.text.data(), size, target, logger);
        };
        BufferLogger log(true, true, true);
        EXPECT_FALSE(read(&log));
        ASSERT_EQ(1u, log.getMessages().size()) << c.text;
        EXPECT_EQ(c.message, std::string(log.getMessages()[0].message.c_str())) << c.text;
        EXPECT_TRUE(log.getMessages()[0].errorType == error::invalidData);
        EXPECT_FALSE(read(nullptr));
        EXPECT_EQ(9u, manager.getSeed());
        Random untouched(5);
        untouched();
        EXPECT_EQ(untouched(), target()) << c.text;
    }
}
