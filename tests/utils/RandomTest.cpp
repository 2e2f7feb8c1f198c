#include <tov/allocator/Allocator.h>
#include <tov/utils/Random.h>
#include <tov/utils/impl/RandomEngine.h>

#include <gtest/gtest.h>

#include <cstdint>

using namespace tov::utils;

namespace {

using Sfmt = impl::RandomEngine<impl::SFMT19937<impl::Random_u32>, impl::MixerSFMT>;

} // namespace

TEST(Random, IsTheSfmtStreamOfItsSeed)
{
    for (unsigned int seed : {0u, 1u, 0xFFFF000u, 0xFFFFFFFFu}) {
        Random stream(seed);
        Sfmt engine(seed);
        for (int i = 0; i < 1500; ++i) {
            ASSERT_EQ(engine(), stream()) << "seed " << seed << " word " << i;
        }
    }
}

TEST(Random, BoundedDrawsTakeTheHighPartAndDrawAgainAboveTheLastFullRange)
{
    // Each case: the bound, and how a raw word maps to a result, or is drawn again (no value).
    struct Case {
        unsigned int n;
        bool (*map)(std::uint32_t word, unsigned int& result);
    };
    const Case cases[] = {
        {1, [](std::uint32_t w, unsigned int& r) { return r = w >> 31, true; }},
        {0xFFFFFFFFu, [](std::uint32_t w, unsigned int& r) { return r = w, true; }},
        // 2^31 + 1 values: only one full range fits, so about half of the words are drawn again.
        {0x80000000u, [](std::uint32_t w, unsigned int& r) { return r = w, w <= 0x80000000u; }},
        // 6 values of 715827882 words each; the 4 words above 6 * 715827882 - 1 are drawn again.
        {5, [](std::uint32_t w, unsigned int& r) { return r = w / 715827882u, w <= 4294967291u; }},
    };
    for (const Case& c : cases) {
        Random stream(11);
        Sfmt raw(11u);
        for (int i = 0; i < 200; ++i) {
            unsigned int expected = 0;
            while (!c.map(raw(), expected)) {
            }
            ASSERT_EQ(expected, stream(c.n)) << "n " << c.n << " draw " << i;
        }
    }
}

TEST(Random, EmptyRangesDrawNothingAndCopiesGoOnWithTheSameSequenceIndependently)
{
    Random stream(3);
    Random twin(3);
    EXPECT_EQ(0u, stream(0));
    EXPECT_EQ(5u, stream(5, 5));
    const unsigned int reversed = stream(7, 3);
    twin();
    EXPECT_GE(reversed, 3u);
    EXPECT_LE(reversed, 7u);
    EXPECT_EQ(twin(), stream());

    // Copies go on with the same sequence, independently.
    Random original(8);
    original();
    Random copy(original);
    Random assigned(99);
    assigned = original;
    const unsigned int next = original();
    EXPECT_EQ(next, copy());
    EXPECT_EQ(next, assigned());
    copy();
    EXPECT_EQ(original(), assigned());
    const auto& itself = assigned; // spelled so, the compiler does not object to the case under test
    assigned = itself;
    EXPECT_EQ(original(), assigned());
}

TEST(Random, HoldsItsEngineInOneTrackedBlock)
{
    tov::allocator::Allocator& memory = tov::allocator::Allocator::instance();
    const unsigned long long blocks = memory.getLiveBlocks();
    {
        Random stream(1);
        stream();
        // The engine and the one-word seed vector.
        EXPECT_EQ(blocks + 2, memory.getLiveBlocks());
        const unsigned long long allocations = memory.getAllocationCount();
        for (int i = 0; i < 5000; ++i) {
            stream();
            stream(100);
        }
        EXPECT_EQ(allocations, memory.getAllocationCount());
    }
    EXPECT_EQ(blocks, memory.getLiveBlocks());
}
