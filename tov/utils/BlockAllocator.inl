#pragma once

namespace tov {
namespace utils {

template <typename T>
BlockAllocator<T>::BlockAllocator(unsigned int blockSize) : blockSize(blockSize), mutex(Mutex::Normal)
{
}

template <typename T>
BlockAllocator<T>::~BlockAllocator()
{
    allocator::Allocator& service = allocator::Allocator::instance();
    const unsigned int bytes = blockSize * static_cast<unsigned int>(sizeof(T));
    for (T* block : usedBlocks) {
        service.deallocate(block, bytes);
    }
    for (T* block : freeBlocks) {
        service.deallocate(block, bytes);
    }
}

template <typename T>
T* BlockAllocator<T>::allocate()
{
    ScopedMutex guard(mutex);
    T* block;
    if (freeBlocks.empty()) {
        block = static_cast<T*>(
            allocator::Allocator::instance().allocate(blockSize * static_cast<unsigned int>(sizeof(T))));
    } else {
        block = freeBlocks.back();
        freeBlocks.pop_back();
    }
    usedBlocks.insert(block);
    return block;
}

template <typename T>
void BlockAllocator<T>::free(T* block)
{
    ScopedMutex guard(mutex);
    const typename Set<T*>::iterator found = usedBlocks.find(block);
    if (found == usedBlocks.end()) {
        TOV_ASSERT(false, "unable to find address among allocated blocks, unable to free");
        return;
    }
    usedBlocks.erase(found);
    freeBlocks.push_back(block);
}

template <typename T>
unsigned int BlockAllocator<T>::getBlockSize() const
{
    return blockSize;
}

} // namespace utils
} // namespace tov
