#pragma once
// Allocator: the one memory service of the library. Every block is counted, so a host can see at any
// moment what the library holds.
//   void* block = tov::allocator::Allocator::instance().allocate(64);
//   tov::allocator::Allocator::instance().deallocate(block, 0);   // the size may be forgotten

#include <tov/allocator/Export.h>

#include <atomic>
#include <cstddef>

namespace tov {
namespace allocator {

class TOV_ALLOCATOR_API Allocator {
public:
    // A snapshot of the accounts; each figure is read atomically, the four together are not.
    struct Statistics {
        unsigned long long liveBytes;
        unsigned long long liveBlocks;
        unsigned long long peakBytes;
        unsigned long long allocationCount;
    };

    // The process-wide service; usable at any time, also while static objects are being built.
    static Allocator& instance();

    // A block of at least `size` bytes, aligned for any type. Ends the process when memory is exhausted.
    void* allocate(unsigned int size);

    // Gives a block back. `size` is what was asked for, or 0 when the caller no longer knows it: the
    // service keeps the size beside each block and never relies on this argument.
    void deallocate(void* block, unsigned int size);

    // The standard realloc over the service: a null block allocates, the content is kept up to the
    // smaller of the two sizes. For C libraries that are handed the service as their allocator.
    void* reallocate(void* block, unsigned int size);

    unsigned long long getLiveBytes() const;
    unsigned long long getLiveBlocks() const;
    unsigned long long getPeakBytes() const;
    unsigned long long getAllocationCount() const;
    Statistics getStatistics() const;

    // Starts a new peak from the bytes live now, so that a host can measure one phase of its work.
    void resetPeakBytes();

    constexpr Allocator() = default;
    Allocator(const Allocator&) = delete;
    Allocator& operator=(const Allocator&) = delete;

private:
    // Bytes are counted here, so that the peak is exact; blocks and allocations are counted per thread.
    std::atomic<unsigned long long> liveBytes{0};
    std::atomic<unsigned long long> peakBytes{0};
};

} // namespace allocator
} // namespace tov

// Tracked placement forms: the library passes its own file and line and a null Allocator*.
TOV_ALLOCATOR_API void* operator new(std::size_t size, const char* file, unsigned int line,
                                     tov::allocator::Allocator* allocator);
TOV_ALLOCATOR_API void operator delete(void* block, const char* file, unsigned int line,
                                       tov::allocator::Allocator* allocator);
