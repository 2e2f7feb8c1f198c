#include <tov/allocator/Allocator.h>
#include <tov/allocator/StdAllocator.h>
#include <tov/utils/Memory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

using tov::allocator::Allocator;

namespace {

struct Counted {
    explicit Counted(int value) : value(value) { ++alive; }
    virtual ~Counted() { --alive; }
    int value;
    static int alive;
};
int Counted::alive = 0;

struct Other {
    virtual ~Other() = default;
    long long padding = 0;
};

// The Counted part sits behind Other, so a pointer to it is not the block's address.
struct Derived : Other, Counted {
    Derived() : Counted(7) {}
    char payload[40] = {};
};

} // namespace

TEST(Allocator, AccountsLiveBytesBlocksPeakAndCount)
{
    Allocator& service = Allocator::instance();
    const Allocator::Statistics before = service.getStatistics();
    service.resetPeakBytes();
    void* a = service.allocate(100);
    void* b = service.allocate(28);
    EXPECT_EQ(before.liveBytes + 128, service.getLiveBytes());
    EXPECT_EQ(before.liveBlocks + 2, service.getLiveBlocks());
    EXPECT_EQ(before.allocationCount + 2, service.getAllocationCount());
    service.deallocate(a, 100);
    service.deallocate(b, 0); // the size may be unknown: the service keeps it
    EXPECT_EQ(before.liveBytes, service.getLiveBytes());
    EXPECT_EQ(before.liveBlocks, service.getLiveBlocks());
    EXPECT_GE(service.getPeakBytes(), before.liveBytes + 128);
}

TEST(Allocator, ReallocateKeepsTheContentAndTheAccounts)
{
    Allocator& service = Allocator::instance();
    const unsigned long long liveBytes = service.getLiveBytes();
    char* block = static_cast<char*>(service.reallocate(nullptr, 4));
    std::copy_n("abcd", 4, block);
    block = static_cast<char*>(service.reallocate(block, 4096)); // grows: the old four bytes come along
    EXPECT_EQ(0, std::memcmp(block, "abcd", 4));
    EXPECT_EQ(liveBytes + 4096, service.getLiveBytes());
    block = static_cast<char*>(service.reallocate(block, 2)); // shrinks: reads no further than it may
    EXPECT_EQ(0, std::memcmp(block, "ab", 2));
    service.deallocate(block, 0);
    EXPECT_EQ(liveBytes, service.getLiveBytes());
}

TEST(Allocator, TrackedNewAndDeleteReleaseThroughABaseAtAnOffset)
{
    const unsigned long long liveBlocks = Allocator::instance().getLiveBlocks();
    Counted* object = TOV_NEW Derived();
    EXPECT_EQ(1, Counted::alive);
    EXPECT_EQ(liveBlocks + 1, Allocator::instance().getLiveBlocks());
    TOV_DELETE(object);
    EXPECT_EQ(0, Counted::alive);
    EXPECT_EQ(liveBlocks, Allocator::instance().getLiveBlocks());
    TOV_DELETE(static_cast<Counted*>(nullptr));
}

TEST(Allocator, TrackedArraysAreGivenBackExactlyWithoutTheirSizeAndBlocksAreAlignedForAnyType)
{
    const unsigned long long liveBytes = Allocator::instance().getLiveBytes();
    char* buffer = TOV_NEW_ARRAY(10);
    EXPECT_EQ(liveBytes + 14, Allocator::instance().getLiveBytes()); // the count word is part of the block
    buffer[9] = 'x';
    TOV_DELETE_ARRAY(buffer);
    TOV_DELETE_ARRAY(nullptr);
    EXPECT_EQ(liveBytes, Allocator::instance().getLiveBytes());

    // Blocks are aligned for any type.
    void* block = Allocator::instance().allocate(3);
    EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t));
    Allocator::instance().deallocate(block, 3);
}

TEST(Allocator, StaysExactUnderConcurrentUse)
{
    const unsigned long long liveBytes = Allocator::instance().getLiveBytes();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            std::vector<int, tov::allocator::StdAllocator<int>> numbers;
            for (int i = 0; i < 20000; ++i) {
                numbers.push_back(i);
                if (i % 64 == 0) {
                    numbers.shrink_to_fit();
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(liveBytes, Allocator::instance().getLiveBytes());
}
