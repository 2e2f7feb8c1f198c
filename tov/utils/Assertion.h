#pragma once
// Assertions: a broken contract breaks into an attached debugger (when pausing is allowed) and then
// calls the current assertion function, whose default prints and ends the process with status 1.
//   TOV_ASSERT(index < size, "index " << index << " out of range");
//   tov::utils::setAssertionFailedFunction(tov::utils::throwOnAssertionFailed);   // for tests

#include <tov/utils/Export.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {

using AssertionFailedFunction = void (*)(const char* file, unsigned int line, const char* message);

// Calls the current assertion function.
TOV_UTILS_API void assertionFailed(const char* file, unsigned int line, const char* message);
// The default: prints "<file>(<line>): [assertion failed] <message>" to standard error and exits with 1.
TOV_UTILS_API void exitOnAssertionFailed(const char* file, unsigned int line, const char* message);
// Prints the same line, then throws std::runtime_error carrying the message.
TOV_UTILS_API void throwOnAssertionFailed(const char* file, unsigned int line, const char* message);

TOV_UTILS_API AssertionFailedFunction getAssertionFailedFunction();
// A null function is not checked for.
TOV_UTILS_API void setAssertionFailedFunction(AssertionFailedFunction function);

// Whether a debugger is attached to the process.
TOV_UTILS_API bool isDebuggerAttached();
TOV_UTILS_API bool isPausingExecutionAllowed();
TOV_UTILS_API void allowPausingExecutionOnDetectedError(bool allow);
// Stops in the attached debugger.
TOV_UTILS_API void breakIntoDebugger();

// True only when a debugger is attached and pausing is allowed; the library uses the value 1.
template <int Enabled>
bool shouldExecutionBePaused()
{
    return Enabled != 0 && isPausingExecutionAllowed() && isDebuggerAttached();
}

} // namespace utils
} // namespace tov

// The message is a stream expression, composed only when the condition fails. When the assertion
// function returns, execution goes on behind the macro.
#define TOV_ASSERT(condition, streamExpression)                                                                        \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            if (::tov::utils::shouldExecutionBePaused<1>()) {                                                          \
                ::tov::utils::breakIntoDebugger();                                                                     \
            }                                                                                                          \
            ::tov::utils::OStringStream TOV_FAIL_stream;                                                               \
            TOV_FAIL_stream << streamExpression; /* NOLINT(bugprone-macro-parentheses): a chain of << */               \
            ::tov::utils::assertionFailed(__FILE__, __LINE__, TOV_FAIL_stream.str().c_str());                          \
        }                                                                                                              \
    } while (false)
