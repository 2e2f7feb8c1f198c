#pragma once
// Singleton: holds and owns the one instance of T behind a static pointer, null until set.
//   Singleton<Facilities>::assertUnset(); Singleton<Facilities>::set(TOV_NEW Facilities());
//   Singleton<Facilities>::get();   // asserts "accessing uninitialized singleton" when unset

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>

namespace tov {
namespace utils {

template <typename T>
class Singleton {
public:
    // Asserts "trying to overwrite singleton instance" when an instance is set. Called before the new
    // instance is built, so that a throwing assertion function leaves nothing behind.
    static void assertUnset();
    // Takes `instance`; an instance already set is overwritten and leaked.
    static void set(T* instance);
    static T& get();
    static bool isSet();
    // Deletes the instance; nothing happens when there is none.
    static void destroy();

private:
    static T* instance;
};

} // namespace utils
} // namespace tov

#include <tov/utils/Singleton.inl>
