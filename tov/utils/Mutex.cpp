#include <tov/utils/Mutex.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Logging.h>

#include <cerrno>

namespace tov {
namespace utils {

namespace {

const char* const invalidLockText =
    "[EINVAL] Either The mutex wasn't properly initialized (during its construction) or the mutex was created "
    "with the protocol attribute having the value PTHREAD_PRIO_PROTECT and the calling thread's priority is "
    "higher than the mutex's current priority ceiling.";
const char* const recursionLimitText = "[EAGAIN] The maximum number of recursive locks for mutex has been exceeded.";

// QUIRK(mutex-check-falls-through): in the construction and destruction checks a failure runs on
// through every row below its own, down to the unknown-error row, once the assertion function has
// returned, each row sending its own message; kept as it has always answered: only a returning
// assertion function (a test's, or a host's that logs and goes on) meets it.

void checkAttributesInit(int result)
{
    switch (result) {
    case 0:
        return;
    case ENOMEM:
        TOV_ASSERT(false, "[ENOMEM] Insufficient memory exists to initialize the mutex attributes object.");
        [[fallthrough]];
    default:
        TOV_ASSERT(false, "Unknown error (" << result << ") during the initialization of the mutex attributes object.");
    }
}

void checkMutexInit(int result)
{
    switch (result) {
    case 0:
        return;
    case EAGAIN:
        TOV_ASSERT(false, "[EAGAIN] The system lacked the necessary resources (other than memory) to initialise "
                          "another mutex.");
        [[fallthrough]];
    case ENOMEM:
        TOV_ASSERT(false, "[ENOMEM] Insufficient memory exists to initialize the mutex.");
        [[fallthrough]];
    case EPERM:
        TOV_ASSERT(false, "[EPERM] The caller does not have the privilege to perform the operation.");
        [[fallthrough]];
    case EBUSY:
        TOV_ASSERT(false, "[EBUSY] The implementation has detected an attempt to re-initialize the object "
                          "referenced by mutex, a previously initialized, but not yet destroyed, mutex.");
        [[fallthrough]];
    case EINVAL:
        TOV_ASSERT(false, "[EINVAL] The value specified by attr is invalid.");
        [[fallthrough]];
    default:
        TOV_ASSERT(false, "Unknown error (" << result << ") during the initialization of the mutex.");
    }
}

void checkMutexDestroy(int result)
{
    switch (result) {
    case 0:
        return;
    case EBUSY:
        TOV_ASSERT(false, "[EBUSY] The implementation has detected an attempt to destroy the object referenced by "
                          "mutex while it is locked or referenced by another thread.");
        [[fallthrough]];
    case EINVAL:
        TOV_ASSERT(false, "[EINVAL] The value specified by mutex is invalid.");
        [[fallthrough]];
    default:
        TOV_ASSERT(false, "Unknown error (" << result << ") during the mutex destruction.");
    }
}

void checkAttributesDestroy(int result)
{
    switch (result) {
    case 0:
        return;
    case EINVAL:
        TOV_ASSERT(false, "[EINVAL] The value specified by attr is invalid.");
        [[fallthrough]];
    default:
        TOV_ASSERT(false, "Unknown error (" << result << ") during the mutex attributes destruction.");
    }
}

// The sentences of the lock operations, one per result code that the operation knows; null where the
// code is not one of its own.
struct LockTexts {
    const char* operation;
    const char* invalid;
    const char* deadlock;
    const char* busy;
    const char* notOwner;
};

const LockTexts lockTexts = {"lock", invalidLockText, "[EDEADLK] The current thread already owns the mutex.", nullptr,
                             nullptr};
const LockTexts tryLockTexts = {"try lock", invalidLockText, nullptr, "[EBUSY] The mutex it already locked.", nullptr};
const LockTexts unlockTexts = {"unlock", "[EINVAL] The mutex wasn't properly initialized (during its construction).",
                               nullptr, nullptr, "[EPERM] The current thread does not own the mutex."};

const char* findLockText(int result, const LockTexts& texts)
{
    switch (result) {
    case EINVAL:
        return texts.invalid;
    case EAGAIN:
        return recursionLimitText;
    case EDEADLK:
        return texts.deadlock;
    case EBUSY:
        return texts.busy;
    case EPERM:
        return texts.notOwner;
    default:
        return nullptr;
    }
}

// Each known code stands alone and is logged when a logger is given; an unknown code asserts whether
// or not there is a logger.
bool reportLockResult(int result, const LockTexts& texts, AbstractLogger* logger)
{
    if (result == 0) {
        return true;
    }
    const char* text = findLockText(result, texts);
    if (text == nullptr) {
        TOV_ASSERT(false, "Unknown error (" << result << ") during the mutex " << texts.operation << ".");
        return false;
    }
    TOV_LOG_ERROR(logger, error::threadError, text);
    return false;
}

} // namespace

Mutex::Mutex(int type)
{
    checkAttributesInit(pthread_mutexattr_init(&attributes));
    pthread_mutexattr_settype(&attributes, type == Recursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_NORMAL);
    checkMutexInit(pthread_mutex_init(&mutex, &attributes));
}

Mutex::~Mutex()
{
    checkMutexDestroy(pthread_mutex_destroy(&mutex));
    checkAttributesDestroy(pthread_mutexattr_destroy(&attributes));
}

bool Mutex::lock(AbstractLogger* logger)
{
    return reportLockResult(pthread_mutex_lock(&mutex), lockTexts, logger);
}

bool Mutex::trylock(AbstractLogger* logger)
{
    return reportLockResult(pthread_mutex_trylock(&mutex), tryLockTexts, logger);
}

bool Mutex::unlock(AbstractLogger* logger)
{
    return reportLockResult(pthread_mutex_unlock(&mutex), unlockTexts, logger);
}

} // namespace utils
} // namespace tov
