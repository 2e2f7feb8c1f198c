#pragma once
// BlockAllocator: hands out raw blocks of a fixed number of T from a free list; constructs nothing and
// gives memory back to the service only when destroyed. Thread-safe.
//   tov::utils::BlockAllocator<Node> nodes(128);
//   Node* block = nodes.allocate(); ...; nodes.free(block);

#include <tov/allocator/Allocator.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/Containers.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/ScopedMutex.h>

namespace tov {
namespace utils {

template <typename T>
class BlockAllocator {
public:
    explicit BlockAllocator(unsigned int blockSize);
    // Gives back every block, used or free, whatever users still hold.
    ~BlockAllocator();
    BlockAllocator(const BlockAllocator&) = delete;
    BlockAllocator& operator=(const BlockAllocator&) = delete;

    // A block of getBlockSize() elements; the most recently freed one first.
    T* allocate();
    // Freeing an address that is not handed out asserts.
    void free(T* block);
    unsigned int getBlockSize() const;

private:
    unsigned int blockSize;
    Set<T*> usedBlocks;
    Vector<T*> freeBlocks;
    Mutex mutex;
};

} // namespace utils
} // namespace tov

#include <tov/utils/BlockAllocator.inl>
