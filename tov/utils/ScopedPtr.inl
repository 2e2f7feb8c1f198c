#pragma once

namespace tov {
namespace utils {

template <typename T>
ScopedPtr<T>::ScopedPtr(T* pointer) : pointer(pointer)
{
}

template <typename T>
ScopedPtr<T>::~ScopedPtr()
{
    TOV_DELETE(pointer);
}

template <typename T>
void ScopedPtr<T>::reset(T* newPointer)
{
    TOV_ASSERT(newPointer == nullptr || newPointer != pointer, "resetting a scoped ptr to itself!");
    if (newPointer != nullptr && newPointer == pointer) {
        return; // destroying it would leave this owner dangling
    }
    T* old = pointer;
    pointer = newPointer;
    TOV_DELETE(old);
}

template <typename T>
T* ScopedPtr<T>::operator->() const
{
    TOV_ASSERT(pointer != nullptr, "accessing a null scoped ptr");
    return pointer;
}

template <typename T>
T& ScopedPtr<T>::operator*() const
{
    TOV_ASSERT(pointer != nullptr, "accessing a null scoped ptr");
    return *pointer;
}

template <typename T>
T* ScopedPtr<T>::get() const
{
    return pointer;
}

template <typename T>
void ScopedPtr<T>::swap(ScopedPtr& other)
{
    T* mine = pointer;
    pointer = other.pointer;
    other.pointer = mine;
}

template <typename T>
ScopedPtr<T>::operator bool() const
{
    return pointer != nullptr;
}

} // namespace utils
} // namespace tov
