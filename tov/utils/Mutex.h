#pragma once
// Mutex: a POSIX mutex whose every failure has a fixed sentence: construction and destruction failures
// are assertions, lock failures a false result and a message to the optional logger.
//   tov::utils::Mutex mutex(tov::utils::Mutex::Recursive);
//   if (mutex.trylock()) { ...; mutex.unlock(); }

#include <tov/utils/Export.h>

#include <pthread.h>

namespace tov {
namespace utils {

class AbstractLogger;

class TOV_UTILS_API Mutex {
public:
    enum Type { Normal = 0, Recursive = 1 };

    // Any value but Recursive gives a normal mutex.
    explicit Mutex(int type = Normal);
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    bool lock(AbstractLogger* logger = nullptr);
    // Failing on a mutex held elsewhere is ordinary, yet logged as an error when a logger is given:
    // a caller that polls passes none.
    [[nodiscard]] bool trylock(AbstractLogger* logger = nullptr);
    bool unlock(AbstractLogger* logger = nullptr);

private:
    friend class Condition;

    // Stands first: Condition::wait hands it to the platform directly.
    pthread_mutex_t mutex;
    pthread_mutexattr_t attributes;
};

} // namespace utils
} // namespace tov
