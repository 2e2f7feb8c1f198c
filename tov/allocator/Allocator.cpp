#include <tov/allocator/Allocator.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

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
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    liveBlocks.fetch_add(1, std::memory_order_relaxed);
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
    liveBlocks.fetch_sub(1, std::memory_order_relaxed);
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
    return liveBlocks.load(std::memory_order_relaxed);
}

unsigned long long Allocator::getPeakBytes() const
{
    return peakBytes.load(std::memory_order_relaxed);
}

unsigned long long Allocator::getAllocationCount() const
{
    return allocationCount.load(std::memory_order_relaxed);
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

void operator delete(void* block, const char* /*file*/, unsigned int /*line*/,
                     tov::allocator::Allocator* /*allocator*/)
{
    tov::allocator::Allocator::instance().deallocate(block, 0);
}
