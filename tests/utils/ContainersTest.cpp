#include <tov/allocator/Allocator.h>
#include <tov/utils/BlockAllocator.h>
#include <tov/utils/BufferLogger.h>
#include <tov/utils/CreatorAbstractFactory.h>
#include <tov/utils/HashTable.h>
#include <tov/utils/ScopedPtr.h>
#include <tov/utils/StringPool.h>

#include "support/AssertionGuard.h"

#include <vector>

using namespace tov::utils;

namespace {

class Containers : public tov::testing::AssertionTest {};

std::vector<unsigned long long> keysInOrder(const HashTable<int>& table)
{
    std::vector<unsigned long long> keys;
    for (const auto& entry : table) {
        keys.push_back(entry.key);
    }
    return keys;
}

struct Shape {
    virtual ~Shape() = default;
    virtual int corners() const = 0;
};

struct Square : Shape {
    int corners() const override { return 4; }
};

struct ShapeCreator {
    virtual ~ShapeCreator() = default;
    virtual Shape* operator()() { return nullptr; }
};

struct SquareCreator : ShapeCreator {
    Shape* operator()() override { return TOV_NEW Square(); }
};

} // namespace

TEST_F(Containers, HashTableGrowsAtSevenTenthsKeepsInsertionOrderAndSurvivesManyCollidingKeys)
{
    HashTable<int> table;
    EXPECT_EQ(0u, table.countBuckets());
    EXPECT_FALSE(table.has(0));
    EXPECT_ASSERTION(table.get(42), "No value registered at 42.");

    std::vector<unsigned long long> inserted;
    // Keys that share bucket 3 of 10 and of 24 build chains across the growth.
    for (unsigned long long key : {3ULL, 13ULL, 123ULL, 243ULL, 5ULL, 7ULL}) {
        table.insert(key, static_cast<int>(key));
        inserted.push_back(key);
        EXPECT_EQ(10u, table.countBuckets());
    }
    table.insert(27, 27);
    inserted.push_back(27);
    EXPECT_EQ(24u, table.countBuckets());
    EXPECT_EQ(inserted, keysInOrder(table));
    for (unsigned long long key : inserted) {
        EXPECT_EQ(static_cast<int>(key), table.get(key));
    }

    table.insert(13, -1); // overwrites in place
    EXPECT_EQ(inserted, keysInOrder(table));
    EXPECT_EQ(-1, table.get(13));

    table.clear();
    EXPECT_TRUE(table.empty());
    table.insert(1, 1);
    EXPECT_EQ(10u, table.countBuckets());

    // Many keys of one bucket, through many growths, and a copy of them.
    table.clear();
    for (int i = 0; i < 2000; ++i) {
        table.insert(static_cast<unsigned long long>(i) * 4096ULL, i);
    }
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(i, table.get(static_cast<unsigned long long>(i) * 4096ULL));
    }
    EXPECT_FALSE(table.has(4095));
    HashTable<int> copy(table);
    EXPECT_EQ(1999, copy.get(1999ULL * 4096ULL));
}

TEST_F(Containers, BlockAllocatorReusesFreedBlocksLastInFirstOut)
{
    const unsigned long long liveBytes = tov::allocator::Allocator::instance().getLiveBytes();
    {
        BlockAllocator<long long> blocks(16);
        EXPECT_EQ(16u, blocks.getBlockSize());
        long long* a = blocks.allocate();
        long long* b = blocks.allocate();
        EXPECT_GE(tov::allocator::Allocator::instance().getLiveBytes(), liveBytes + 2 * 16 * sizeof(long long));
        blocks.free(a);
        blocks.free(b);
        EXPECT_EQ(b, blocks.allocate());
        EXPECT_EQ(a, blocks.allocate());
        blocks.free(a);
        EXPECT_ASSERTION(blocks.free(a), "unable to find address among allocated blocks, unable to free");
    } // the used block b is given back too
    EXPECT_EQ(liveBytes, tov::allocator::Allocator::instance().getLiveBytes());
}

TEST_F(Containers, StringPoolKeepsShortStringsAndDropsLongOnes)
{
    StringPool pool(2, 4);
    EXPECT_EQ(2u, pool.size());
    String* kept = pool.obtain();
    String* other = pool.obtain();
    EXPECT_EQ(0u, pool.size());
    kept->assign("four");
    pool.recycle(kept);
    EXPECT_EQ(1u, pool.size());
    other->assign("five!");
    pool.recycle(other); // longer than the maximum: destroyed
    EXPECT_EQ(1u, pool.size());
    String* again = pool.obtain();
    EXPECT_EQ(kept, again);
    EXPECT_TRUE(again->empty());
    EXPECT_ASSERTION(pool.recycle(nullptr), "null pointer not allowed for parameter 'string'");
    pool.recycle(again);

    StringPool copy(pool); // no shared strings, so both can go without a double release
    EXPECT_EQ(0u, copy.size());
}

TEST_F(Containers, ScopedPtrOwnsResetsAndSwaps)
{
    const unsigned long long liveBlocks = tov::allocator::Allocator::instance().getLiveBlocks();
    {
        ScopedPtr<Shape> empty;
        EXPECT_FALSE(empty);
        EXPECT_ASSERTION(empty->corners(), "accessing a null scoped ptr");
        empty.reset();

        ScopedPtr<Shape> owner(TOV_NEW Square());
        EXPECT_EQ(4, owner->corners());
        EXPECT_ASSERTION(owner.reset(owner.get()), "resetting a scoped ptr to itself!");
        EXPECT_EQ(4, (*owner).corners()); // still owned, not destroyed
        owner.swap(empty);
        EXPECT_FALSE(owner);
        EXPECT_TRUE(empty);
        empty.reset(TOV_NEW Square());
    }
    EXPECT_EQ(liveBlocks, tov::allocator::Allocator::instance().getLiveBlocks());
}

TEST_F(Containers, CreatorFactoryRegistersOnceAndFallsBackToTheDefault)
{
    CreatorAbstractFactory<String, ShapeCreator> factory;
    BufferLogger log(false, false, false);
    EXPECT_EQ(nullptr, factory.getCreator("square")());
    EXPECT_TRUE(factory.registerCreator<SquareCreator>("square", &log));
    EXPECT_FALSE(factory.registerCreator<SquareCreator>("square", &log));
    EXPECT_TRUE(factory.isRegistered("square"));
    Shape* shape = factory.getCreator("square")();
    ASSERT_NE(nullptr, shape);
    EXPECT_EQ(4, shape->corners());
    TOV_DELETE(shape);
    EXPECT_TRUE(factory.unregisterCreator("square", &log));
    EXPECT_FALSE(factory.unregisterCreator("square", &log));
    ASSERT_EQ(2u, log.getMessages().size());
    EXPECT_EQ("A creator is already registered for square.", log.getMessages()[0].message);
    EXPECT_EQ(error::invalidOperation, log.getMessages()[0].errorType);
    EXPECT_EQ("No creator already registered for square.", log.getMessages()[1].message);
    EXPECT_EQ(error::invalidArgument, log.getMessages()[1].errorType);
    EXPECT_TRUE(factory.registerCreator<SquareCreator>("kept until the factory goes", nullptr));
}
