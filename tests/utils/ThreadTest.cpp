#include <tov/utils/BufferLogger.h>
#include <tov/utils/Condition.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/Thread.h>

#include "support/BoundedWait.h"
#include "support/RecordingAssertions.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>

using namespace tov::utils;

namespace {

struct Handshake {
    Mutex mutex;
    Condition condition;
    bool ready = false;
    bool released = false;
};

// Holds `mutex` until the test releases it, so that the test can meet a lock held by another thread.
struct Holder {
    explicit Holder(Mutex& held) : held(&held) {}
    Mutex* held;
    Handshake handshake;
};

void* holdMutex(void* argument)
{
    Holder& holder = *static_cast<Holder*>(argument);
    holder.held->lock();
    {
        ScopedMutex guard(holder.handshake.mutex);
        holder.handshake.ready = true;
        holder.handshake.condition.broadcast();
        while (!holder.handshake.released) {
            holder.handshake.condition.wait(holder.handshake.mutex);
        }
    }
    holder.held->unlock();
    return nullptr;
}

void waitUntilReady(Handshake& handshake)
{
    ScopedMutex guard(handshake.mutex);
    while (!handshake.ready) {
        handshake.condition.wait(handshake.mutex);
    }
}

void release(Handshake& handshake)
{
    ScopedMutex guard(handshake.mutex);
    handshake.released = true;
    handshake.condition.broadcast();
}

void* returnArgument(void* argument)
{
    return argument;
}

} // namespace

TEST(Mutex, LockFailuresAreLoggedOnlyWithALogger)
{
    for (int type : {static_cast<int>(Mutex::Normal), static_cast<int>(Mutex::Recursive)}) {
        Mutex mutex(type);
        Holder holder(mutex);
        Thread thread(&holdMutex, &holder);
        waitUntilReady(holder.handshake);

        BufferLogger log(false, false, false);
        EXPECT_FALSE(mutex.trylock(nullptr));
        EXPECT_FALSE(mutex.trylock(&log));
        ASSERT_EQ(1u, log.getMessages().size());
        EXPECT_EQ("[EBUSY] The mutex it already locked.", log.getMessages()[0].message);
        EXPECT_EQ(error::threadError, log.getMessages()[0].errorType);
        if (type == Mutex::Recursive) {
            // Only a recursive mutex knows its owner; unlocking a normal one from elsewhere is undefined.
            EXPECT_FALSE(mutex.unlock(&log));
            ASSERT_EQ(2u, log.getMessages().size());
            EXPECT_EQ("[EPERM] The current thread does not own the mutex.", log.getMessages()[1].message);
        }
        log.clear();

        release(holder.handshake);
        EXPECT_TRUE(thread.join(nullptr));
        EXPECT_TRUE(mutex.trylock(&log));
        EXPECT_TRUE(mutex.unlock(&log));
        EXPECT_TRUE(log.getMessages().empty());
    }
}

TEST(Mutex, RecursiveCountsAndAnyOtherTypeIsNormal)
{
    Mutex recursive(Mutex::Recursive);
    {
        ScopedMutex outer(recursive);
        ScopedMutex inner(recursive);
        EXPECT_TRUE(recursive.trylock());
        EXPECT_TRUE(recursive.unlock());
    }
    Mutex normal(7);
    ASSERT_TRUE(normal.lock());
    EXPECT_FALSE(normal.trylock()); // a normal mutex does not count
    EXPECT_TRUE(normal.unlock());
}

TEST(Mutex, DestroyingALockedMutexRunsThroughEveryRowBelow)
{
    tov::testing::RecordingAssertions recording;
    {
        Mutex mutex;
        mutex.lock();
    }
    const std::vector<std::string> expected = {
        "[EBUSY] The implementation has detected an attempt to destroy the object referenced by mutex while it is "
        "locked or referenced by another thread.",
        "[EINVAL] The value specified by mutex is invalid.",
        "Unknown error (" + std::to_string(EBUSY) + ") during the mutex destruction.",
    };
    EXPECT_EQ(expected, recording.messages());
}

TEST(Thread, JoinGivesTheResultAndTheDestructorCopesWithEveryState)
{
    int value = 5;
    void* result = nullptr;
    {
        Thread thread(&returnArgument, &value);
        EXPECT_TRUE(thread.join(&result));
        EXPECT_FALSE(thread.join(&result)); // a second join is refused, not undefined
    }
    EXPECT_EQ(&value, result);

    std::atomic<bool> finished{false};
    {
        Thread runningOn(
            [](void* flag) -> void* {
                static_cast<std::atomic<bool>*>(flag)->store(true);
                return nullptr;
            },
            &finished);
    } // detached, not joined: the thread runs on by itself
    EXPECT_TRUE(tov::testing::waitFor([&finished] { return finished.load(); }, std::chrono::seconds(10)));
}

TEST(Condition, SignalWakesAWaiter)
{
    Handshake handshake;
    Thread thread(
        [](void* argument) -> void* {
            Handshake& shared = *static_cast<Handshake*>(argument);
            ScopedMutex guard(shared.mutex);
            shared.ready = true;
            shared.condition.signal();
            return nullptr;
        },
        &handshake);
    waitUntilReady(handshake);
    EXPECT_TRUE(thread.join(nullptr));
    EXPECT_TRUE(handshake.condition.broadcast());
}
