#pragma once
// ScopedPtr: sole owner of an object made by TOV_NEW; destroys it with TOV_DELETE. Not copyable:
// ownership moves by swap.
//   tov::utils::ScopedPtr<Widget> widget(TOV_NEW Widget(3));
//   widget->draw();   // asserts "accessing a null scoped ptr" when empty

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>

namespace tov {
namespace utils {

template <typename T>
class ScopedPtr {
public:
    explicit ScopedPtr(T* pointer = nullptr);
    ~ScopedPtr();
    ScopedPtr(const ScopedPtr&) = delete;
    ScopedPtr& operator=(const ScopedPtr&) = delete;

    // Takes `pointer`, then destroys the old object. Resetting to the pointer held asserts.
    void reset(T* pointer = nullptr);
    T* operator->() const;
    T& operator*() const;
    T* get() const;
    void swap(ScopedPtr& other);
    explicit operator bool() const;

private:
    T* pointer;
};

} // namespace utils
} // namespace tov

#include <tov/utils/ScopedPtr.inl>
