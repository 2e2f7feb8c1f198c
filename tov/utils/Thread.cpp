#include <tov/utils/Thread.h>

#include <tov/utils/Assertion.h>

#include <sched.h>

namespace tov {
namespace utils {

Thread::Thread(EntryFunction entry, void* argument) : thread(), joinable(false)
{
    pthread_attr_init(&attributes);
    const int result = pthread_create(&thread, &attributes, entry, argument);
    joinable = result == 0;
    TOV_ASSERT(result == 0, "Thread creation failed");
}

Thread::~Thread()
{
    detach();
    pthread_attr_destroy(&attributes);
}

bool Thread::join(void** result)
{
    if (!joinable) {
        return false;
    }
    const bool joined = pthread_join(thread, result) == 0;
    joinable = !joined;
    return joined;
}

void Thread::detach()
{
    if (joinable) {
        pthread_detach(thread);
        joinable = false;
    }
}

bool Thread::cancel()
{
    return pthread_cancel(thread) == 0;
}

void Thread::exit()
{
    pthread_exit(nullptr);
}

void Thread::yield()
{
    sched_yield();
}

} // namespace utils
} // namespace tov
