#include <tov/utils/impl/YajlAllocation.h>

#include <tov/allocator/Allocator.h>

#include <cstddef>

namespace tov {
namespace utils {
namespace impl {

namespace {

void* allocateForYajl(void*, std::size_t size)
{
    return allocator::Allocator::instance().allocate(static_cast<unsigned int>(size));
}

void freeForYajl(void*, void* block)
{
    allocator::Allocator::instance().deallocate(block, 0);
}

// yajl does not say how large the old block was; the service knows, so the copy never reads past it.
void* reallocateForYajl(void*, void* block, std::size_t size)
{
    return allocator::Allocator::instance().reallocate(block, static_cast<unsigned int>(size));
}

} // namespace

yajl_alloc_funcs makeYajlAllocationFunctions()
{
    yajl_alloc_funcs functions;
    functions.malloc = &allocateForYajl;
    functions.realloc = &reallocateForYajl;
    functions.free = &freeForYajl;
    functions.ctx = nullptr;
    return functions;
}

} // namespace impl
} // namespace utils
} // namespace tov
