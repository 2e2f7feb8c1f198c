#pragma once
// Thread: a POSIX thread that starts when constructed. The destructor detaches and never joins.
//   tov::utils::Thread worker(&run, &state);
//   void* result = nullptr; worker.join(&result);

#include <tov/utils/Export.h>

#include <pthread.h>

namespace tov {
namespace utils {

class TOV_UTILS_API Thread {
public:
    using EntryFunction = void* (*)(void*);

    // A failed start asserts "Thread creation failed"; the object then has no running thread.
    Thread(EntryFunction entry, void* argument);
    ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    bool join(void** result);
    void detach();
    bool cancel();

    // Ends the calling thread.
    static void exit();
    // Gives up the rest of the time slice.
    static void yield();

private:
    pthread_t thread;
    pthread_attr_t attributes;
    // Whether `thread` still names a thread that nobody joined or detached. POSIX leaves a second
    // detach, or a detach after join, undefined (glibc may touch a freed descriptor), so the handle
    // is given to the platform only while this holds.
    bool joinable;
};

} // namespace utils
} // namespace tov
