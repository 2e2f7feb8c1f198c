#pragma once
// StdAllocator: the standard-library allocator over the memory service, behind every container of the
// library (String, Vector, Map, Set, Deque).
//   std::vector<int, tov::allocator::StdAllocator<int>> counted;   // its buffer shows in the accounts

#include <tov/allocator/Allocator.h>

#include <cstdio>
#include <cstdlib>
#include <limits>

namespace tov {
namespace allocator {

template <typename T>
class StdAllocator {
public:
    using value_type = T;

    StdAllocator() noexcept : allocator(&Allocator::instance()) {}
    template <typename U>
    StdAllocator(const StdAllocator<U>&) noexcept : allocator(&Allocator::instance())
    {
    }
    StdAllocator(const StdAllocator&) noexcept : allocator(&Allocator::instance()) {}
    StdAllocator& operator=(const StdAllocator&) noexcept = default;

    T* allocate(std::size_t count)
    {
        // The service counts in 32 bits; a container that asks for more has no sane use here. T may well be
        // a pointer: its size is what is counted (so for the two NOLINTs below, and the one in deallocate).
        // NOLINTNEXTLINE(bugprone-sizeof-expression)
        if (count > std::numeric_limits<unsigned int>::max() / sizeof(T)) {
            std::fputs("tov::allocator: a container asked for 4 GiB or more at once\n", stderr);
            std::abort();
        }
        // NOLINTNEXTLINE(bugprone-sizeof-expression)
        return static_cast<T*>(allocator->allocate(static_cast<unsigned int>(count * sizeof(T))));
    }

    void deallocate(T* block, std::size_t count) noexcept
    {
        // NOLINTNEXTLINE(bugprone-sizeof-expression): T may well be a pointer; its size is what is counted.
        allocator->deallocate(block, static_cast<unsigned int>(count * sizeof(T)));
    }

    Allocator* getAllocator() const noexcept { return allocator; }

private:
    Allocator* allocator;
};

template <typename T, typename U>
bool operator==(const StdAllocator<T>& a, const StdAllocator<U>& b) noexcept
{
    return a.getAllocator() == b.getAllocator();
}

template <typename T, typename U>
bool operator!=(const StdAllocator<T>& a, const StdAllocator<U>& b) noexcept
{
    return !(a == b);
}

} // namespace allocator
} // namespace tov
