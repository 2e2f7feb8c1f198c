#pragma once
// ScopedMutex: holds a Mutex for the life of a scope.
//   { tov::utils::ScopedMutex guard(mutex); ...; }   // unlocked at the closing brace

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class Mutex;

class TOV_UTILS_API ScopedMutex {
public:
    // A failed lock asserts; when the assertion function returns the scope runs unprotected.
    explicit ScopedMutex(Mutex& mutex);
    ~ScopedMutex();
    ScopedMutex(const ScopedMutex&) = delete;
    ScopedMutex& operator=(const ScopedMutex&) = delete;

private:
    Mutex& mutex;
};

} // namespace utils
} // namespace tov
