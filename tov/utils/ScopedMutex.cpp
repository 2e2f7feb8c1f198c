#include <tov/utils/ScopedMutex.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Mutex.h>

namespace tov {
namespace utils {

// QUIRK(scoped-mutex-silent): the mutex is called without a logger, so nothing reaches a log despite
// the wording; a failed lock is reported by the assertion that follows, once.
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
