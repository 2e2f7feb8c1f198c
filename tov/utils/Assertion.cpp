#include <tov/utils/Assertion.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace tov {
namespace utils {

namespace {

// Plain globals, set before threads start.
AssertionFailedFunction currentAssertionFunction = exitOnAssertionFailed;
bool pausingAllowed = true;

void printAssertion(const char* file, unsigned int line, const char* message)
{
    std::cerr.write(file, static_cast<std::streamsize>(std::strlen(file)));
    std::cerr << '(' << line << "): [assertion failed] ";
    std::cerr.write(message, static_cast<std::streamsize>(std::strlen(message)));
    std::cerr << std::endl;
}

} // namespace

void assertionFailed(const char* file, unsigned int line, const char* message)
{
    currentAssertionFunction(file, line, message);
}

void exitOnAssertionFailed(const char* file, unsigned int line, const char* message)
{
    printAssertion(file, line, message);
    std::exit(1);
}

void throwOnAssertionFailed(const char* file, unsigned int line, const char* message)
{
    printAssertion(file, line, message);
    throw std::runtime_error(message);
}

AssertionFailedFunction getAssertionFailedFunction()
{
    return currentAssertionFunction;
}

void setAssertionFailedFunction(AssertionFailedFunction function)
{
    currentAssertionFunction = function;
}

bool isDebuggerAttached()
{
    // A tracer shows as a non-zero TracerPid in the process status. Read with a fixed buffer, so that
    // an assertion made while memory is short does not need any.
    const int file = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    char status[4096];
    const ssize_t length = ::read(file, status, sizeof status - 1);
    ::close(file);
    if (length <= 0) {
        return false;
    }
    status[length] = '\0';
    const char* tracer = std::strstr(status, "TracerPid:");
    return tracer != nullptr && std::strtol(tracer + 10, nullptr, 10) != 0;
}

bool isPausingExecutionAllowed()
{
    return pausingAllowed;
}

void allowPausingExecutionOnDetectedError(bool allow)
{
    pausingAllowed = allow;
}

void breakIntoDebugger()
{
    std::raise(SIGTRAP);
}

} // namespace utils
} // namespace tov
