#pragma once
// Condition: a POSIX condition variable over a Mutex; there is no timed wait.
//   ScopedMutex guard(mutex);
//   while (!ready) condition.wait(mutex);

#include <tov/utils/Export.h>

#include <pthread.h>

namespace tov {
namespace utils {

class Mutex;

class TOV_UTILS_API Condition {
public:
    Condition();
    ~Condition();
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    // `mutex` must be locked by the caller.
    bool wait(Mutex& mutex);
    bool signal();
    bool broadcast();

private:
    pthread_cond_t condition;
};

} // namespace utils
} // namespace tov
