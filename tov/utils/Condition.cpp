#include <tov/utils/Condition.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Mutex.h>

namespace tov {
namespace utils {

Condition::Condition()
{
    const int result = pthread_cond_init(&condition, nullptr);
    TOV_ASSERT(result == 0, "Condition initialization failed");
}

Condition::~Condition()
{
    pthread_cond_destroy(&condition);
}

bool Condition::wait(Mutex& mutex)
{
    return pthread_cond_wait(&condition, &mutex.mutex) == 0;
}

bool Condition::signal()
{
    return pthread_cond_signal(&condition) == 0;
}

bool Condition::broadcast()
{
    return pthread_cond_broadcast(&condition) == 0;
}

} // namespace utils
} // namespace tov
