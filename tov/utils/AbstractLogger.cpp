#include <tov/utils/AbstractLogger.h>

namespace tov {
namespace utils {

AbstractLogger::AbstractLogger(bool logWarning, bool logInfo, bool logTrace)
    : loggingWarning(logWarning), loggingInfo(logInfo), loggingTrace(logTrace), hasError(false)
{
}

AbstractLogger::~AbstractLogger() = default;

void AbstractLogger::resetErrors()
{
    hasError = false;
}

bool AbstractLogger::isLoggingTrace() const
{
    return loggingTrace;
}

bool AbstractLogger::isLoggingInfo() const
{
    return loggingInfo;
}

bool AbstractLogger::isLoggingWarning() const
{
    return loggingWarning;
}

void AbstractLogger::logTrace(const char* file, unsigned int line, const char* message)
{
    if (loggingTrace) {
        doLogTrace(file, line, message);
    }
}

void AbstractLogger::logInfo(const char* file, unsigned int line, const char* message)
{
    if (loggingInfo) {
        doLogInfo(file, line, message);
    }
}

void AbstractLogger::logWarning(const char* file, unsigned int line, const char* message)
{
    if (loggingWarning) {
        doLogWarning(file, line, message);
    }
}

void AbstractLogger::logError(const ErrorType& type, const char* file, unsigned int line, const char* message)
{
    hasError = true;
    doLogError(type, file, line, message);
}

bool AbstractLogger::hasErrors() const
{
    return hasError;
}

void AbstractLogger::doLogTrace(const char*, unsigned int, const char*) {}

void AbstractLogger::doLogInfo(const char*, unsigned int, const char*) {}

void AbstractLogger::doLogWarning(const char*, unsigned int, const char*) {}

} // namespace utils
} // namespace tov
