#include <tov/utils/debugger/ExecutionController.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/ScopedMutex.h>

namespace tov {
namespace utils {
namespace debugger {

ExecutionController::ScopedControlLocker::ScopedControlLocker(ExecutionController& controller) : controller(controller)
{
    controller.lock();
}

ExecutionController::ScopedControlLocker::~ScopedControlLocker()
{
    controller.unlock();
}

ExecutionController::ExecutionController() : suspended(false), controlMutex(Mutex::Normal), stateMutex(Mutex::Normal) {}

ExecutionController::~ExecutionController() = default;

void ExecutionController::suspend()
{
    {
        ScopedMutex control(controlMutex);
        const bool locked = stateMutex.lock();
        TOV_ASSERT(locked, "Can't lock the state mutex.");
        suspended = true;
        // The controls are given back before waiting, so that a resume can reach the gate.
    }
    // Tested again after every wake-up: a wake-up may be spurious, and a resume is a broadcast.
    do {
        condition.wait(stateMutex);
    } while (suspended);
    const bool unlocked = stateMutex.unlock();
    TOV_ASSERT(unlocked, "Can't unlock the state mutex.");
}

bool ExecutionController::isSuspended() const
{
    ScopedMutex state(stateMutex);
    return suspended;
}

// The broadcast before the store is safe: the woken threads need stateMutex, held here, to leave the
// wait, and by then they see false.
void ExecutionController::resume()
{
    ScopedMutex control(controlMutex);
    ScopedMutex state(stateMutex);
    condition.broadcast();
    suspended = false;
}

void ExecutionController::lock()
{
    const bool locked = controlMutex.lock();
    TOV_ASSERT(locked, "Failed to lock the execution controls.");
}

void ExecutionController::unlock()
{
    const bool unlocked = controlMutex.unlock();
    TOV_ASSERT(unlocked, "Failed to unlock the execution controls.");
}

} // namespace debugger
} // namespace utils
} // namespace tov
