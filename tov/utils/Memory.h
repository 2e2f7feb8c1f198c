#pragma once
// Tracked new and delete: the one way objects and handed-out buffers of the library are made and
// released, so that the memory service accounts for all of them.
//   Widget* widget = TOV_NEW Widget(3);   ...   TOV_DELETE(widget);
//   char* buffer = TOV_NEW_ARRAY(64);     ...   TOV_DELETE_ARRAY(buffer);   // also for buffers the library hands out

#include <tov/allocator/Allocator.h>
#include <tov/utils/Export.h>

#include <type_traits>

#define TOV_NEW new (__FILE__, __LINE__, static_cast<::tov::allocator::Allocator*>(nullptr))
#define TOV_DELETE(pointer) ::tov::utils::trackedDelete((pointer), __FILE__, __LINE__)
#define TOV_NEW_ARRAY(count) ::tov::utils::trackedArrayNew((count), __FILE__, __LINE__)
#define TOV_DELETE_ARRAY(pointer) ::tov::utils::trackedArrayDelete((pointer), __FILE__, __LINE__)

namespace tov {
namespace utils {

// Destroys an object made by TOV_NEW and gives its block back; null is ignored. An object reached
// through a polymorphic base is released at the address of its most derived part.
template <typename T>
void trackedDelete(T* object, const char* file, unsigned int line)
{
    if (object == nullptr) {
        return;
    }
    void* block;
    if constexpr (std::is_polymorphic<T>::value) {
        block = const_cast<void*>(dynamic_cast<const volatile void*>(object));
    } else {
        block = const_cast<void*>(static_cast<const volatile void*>(object));
    }
    object->~T();
    ::operator delete(block, file, line, static_cast<::tov::allocator::Allocator*>(nullptr));
}

// A buffer of `count` chars. A 32-bit word in front of it keeps the count; the block is given back
// with the size 0, which the memory service accepts.
TOV_UTILS_API char* trackedArrayNew(unsigned int count, const char* file, unsigned int line);

// Releases a buffer made by trackedArrayNew, as every buffer that the library hands to its caller is.
// Null is ignored.
TOV_UTILS_API void trackedArrayDelete(char* buffer, const char* file, unsigned int line);

} // namespace utils
} // namespace tov
