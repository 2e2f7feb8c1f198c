#include <tov/utils/ScopedMutex.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Mutex.h>

namespace tov {
namespace utils {

// The mutex is called without a logger on purpose, so nothing reaches a log despite the wording.
ScopedMutex::ScopedMutex(Mutex& mutex) : mutex(mutex)
{
    const bool locked = mutex.lock(nullptr);
    TOV_ASSERT(locked, "Failed to lock mutex, see log for details.");
}

ScopedMutex::~ScopedMutex()
{
    const bool unlocked = mutex.unlock(nullptr);
    TOV_ASSERT(unlocked, "Failed to unlock mutex, see log for details.");
}

} // namespace utils
} // namespace tov
