#pragma once
// ExecutionController: the gate of a debugged simulation. A thread that calls suspend stays there until
// another thread calls resume, which lets every waiting thread go at once. A host may derive from it to
// add behaviour around the slots; the debugger calls suspend, isSuspended and resume through them.
//   ExecutionController& gate = framework.getDebugger().getExecutionController();
//   gate.suspend();   // on a simulation thread, at a breakpoint: returns after a resume elsewhere
//   { ExecutionController::ScopedControlLocker hold(gate); ... }   // no suspend or resume meanwhile

#include <tov/utils/Condition.h>
#include <tov/utils/Export.h>
#include <tov/utils/Mutex.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API ExecutionController {
public:
    // Holds the execution controls for the life of a scope. The holder must not call suspend or resume.
    class TOV_UTILS_API ScopedControlLocker {
    public:
        explicit ScopedControlLocker(ExecutionController& controller);
        ~ScopedControlLocker();
        ScopedControlLocker(const ScopedControlLocker&) = delete;
        ScopedControlLocker& operator=(const ScopedControlLocker&) = delete;

    private:
        ExecutionController& controller;
    };

    ExecutionController();
    virtual ~ExecutionController();
    ExecutionController(const ExecutionController&) = delete;
    ExecutionController& operator=(const ExecutionController&) = delete;

    // Blocks the calling thread until the next resume.
    virtual void suspend();
    // True from the moment the first thread closed the gate until a resume opened it again.
    virtual bool isSuspended() const;
    // Lets every thread waiting in suspend go; harmless when none waits.
    virtual void resume();
    // The execution controls: while they are held, suspend and resume wait at their first step.
    virtual void lock();
    virtual void unlock();

private:
    bool suspended;
    // Taken before stateMutex whenever both are needed.
    Mutex controlMutex;
    mutable Mutex stateMutex;
    Condition condition;
};

} // namespace debugger
} // namespace utils
} // namespace tov
