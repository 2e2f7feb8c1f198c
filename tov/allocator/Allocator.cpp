#include <tov/allocator/Allocator.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include <pthread.h>

namespace tov {
namespace allocator {

namespace {

// Each block carries its size in a header in front of it. The header is as large as the strictest
// fundamental alignment, so the address handed out keeps malloc's alignment.
struct alignas(std::max_align_t) BlockHeader {
    unsigned long long size;
};

// Constant-initialised (constexpr constructor) with a trivial destructor, so that it serves the static
// constructors and destructors of any library in any order.
Allocator theInstance;

// The block counts of one thread. Only that thread writes them, with plain stores rather than locked
// instructions, which made up most of the cost of an allocation; a reader adds up every thread's
// counts. A record outlives its thread (the counts stay part of the totals) and is taken over by the
// next thread that starts. Live blocks of one record go below zero when its thread frees what others made.
struct ThreadCounts {
    std::atomic<long long> allocations{0};
    std::atomic<long long> liveBlocks{0};
    std::atomic<bool> inUse{true};
    ThreadCounts* next = nullptr;
};

std::atomic<ThreadCounts*> threadCountsList{nullptr};
// Read on every allocation and freeing. In the general model each read is a call to the dynamic loader's
// look-up (4% of filling a string table); the initial-exec model reads it at a fixed offset from the
// thread pointer. A library loaded later by dlopen still gets it: the C library keeps room in the static
// block for a few bytes of such libraries, and this is one pointer.
__attribute__((tls_model("initial-exec"))) thread_local ThreadCounts* threadCounts = nullptr;

// Runs in the ending thread. Should it allocate again afterwards (a later destructor), it takes a record anew.
void releaseThreadCounts(void* counts)
{
    threadCounts = nullptr;
    static_cast<ThreadCounts*>(counts)->inUse.store(false, std::memory_order_release);
}

pthread_key_t threadExitKey()
{
    static const pthread_key_t key = [] {
        pthread_key_t created;
        pthread_key_create(&created, &releaseThreadCounts);
        return created;
    }();
    return key;
}

// The records are taken from malloc directly: they are the service's own and never given back.
ThreadCounts& acquireThreadCounts()
{
    ThreadCounts* counts = nullptr;
    for (ThreadCounts* record = threadCountsList.load(std::memory_order_acquire); record != nullptr;
         record = record->next) {
        bool free = false;
        if (!record->inUse.load(std::memory_order_relaxed) &&
            record->inUse.compare_exchange_strong(free, true, std::memory_order_acquire)) {
            counts = record;
            break;
        }
    }
    if (counts == nullptr) {
        counts = new (std::malloc(sizeof(ThreadCounts))) ThreadCounts();
        ThreadCounts* head = threadCountsList.load(std::memory_order_relaxed);
        do {
            counts->next = head;
        } while (!threadCountsList.compare_exchange_weak(head, counts, std::memory_order_release,
                                                         std::memory_order_relaxed));
    }
    pthread_setspecific(threadExitKey(), counts);
    threadCounts = counts;
    return *counts;
}

ThreadCounts& currentThreadCounts()
{
    return threadCounts != nullptr ? *threadCounts : acquireThreadCounts();
}

void increment(std::atomic<long long>& count, long long delta)
{
    count.store(count.load(std::memory_order_relaxed) + delta, std::memory_order_relaxed);
}

long long sumOverThreads(std::atomic<long long> ThreadCounts::*count)
{
    long long sum = 0;
    for (ThreadCounts* record = threadCountsList.load(std::memory_order_acquire); record != nullptr;
         record = record->next) {
        sum += (record->*count).load(std::memory_order_relaxed);
    }
    return sum;
}

void raisePeak(std::atomic<unsigned long long>& peak, unsigned long long candidate)
{
    unsigned long long seen = peak.load(std::memory_order_relaxed);
    while (candidate > seen && !peak.compare_exchange_weak(seen, candidate, std::memory_order_relaxed)) {
    }
}

} // namespace

Allocator& Allocator::instance()
{
    return theInstance;
}

void* Allocator::allocate(unsigned int size)
{
    BlockHeader* header = static_cast<BlockHeader*>(std::malloc(sizeof(BlockHeader) + size));
    if (header == nullptr) {
        std::fputs("tov::allocator: out of memory\n", stderr);
        std::abort();
    }
    header->size = size;
    ThreadCounts& counts = currentThreadCounts();
    increment(counts.allocations, 1);
    increment(counts.liveBlocks, 1);
    const unsigned long long live = liveBytes.fetch_add(size, std::memory_order_relaxed) + size;
    raisePeak(peakBytes, live);
    return header + 1;
}

void Allocator::deallocate(void* block, unsigned int /*size*/)
{
    if (block == nullptr) {
        return;
    }
    BlockHeader* header = static_cast<BlockHeader*>(block) - 1;
    increment(currentThreadCounts().liveBlocks, -1);
    liveBytes.fetch_sub(header->size, std::memory_order_relaxed);
    std::free(header);
}

void* Allocator::reallocate(void* block, unsigned int size)
{
    void* resized = allocate(size);
    if (block != nullptr) {
        const unsigned long long oldSize = (static_cast<BlockHeader*>(block) - 1)->size;
        std::memcpy(resized, block, oldSize < size ? oldSize : size);
        deallocate(block, 0);
    }
    return resized;
}

unsigned long long Allocator::getLiveBytes() const
{
    return liveBytes.load(std::memory_order_relaxed);
}

unsigned long long Allocator::getLiveBlocks() const
{
    return static_cast<unsigned long long>(sumOverThreads(&ThreadCounts::liveBlocks));
}

unsigned long long Allocator::getPeakBytes() const
{
    return peakBytes.load(std::memory_order_relaxed);
}

unsigned long long Allocator::getAllocationCount() const
{
    return static_cast<unsigned long long>(sumOverThreads(&ThreadCounts::allocations));
}

Allocator::Statistics Allocator::getStatistics() const
{
    return Statistics{getLiveBytes(), getLiveBlocks(), getPeakBytes(), getAllocationCount()};
}

void Allocator::resetPeakBytes()
{
    peakBytes.store(liveBytes.load(std::memory_order_relaxed), std::memory_order_relaxed);
}

} // namespace allocator
} // namespace tov

void* operator new(std::size_t size, const char* /*file*/, unsigned int /*line*/,
                   tov::allocator::Allocator* /*allocator*/)
{
    if (size > std::numeric_limits<unsigned int>::max()) {
        std::fputs("tov::allocator: a single block of 4 GiB or more was asked for\n", stderr);
        std::abort();
    }
    return tov::allocator::Allocator::instance().allocate(static_cast<unsigned int>(size));
}

void operator delete(void* block, const char* /*file*/, unsigned int /*line*/, tov::allocator::Allocator* /*allocator*/)
{
    tov::allocator::Allocator::instance().deallocate(block, 0);
}
