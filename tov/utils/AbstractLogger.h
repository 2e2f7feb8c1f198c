#pragma once
// AbstractLogger: where reportable failures and notes go. Errors always pass; the three other levels
// pass only when their flag is on. Passed as a possibly null pointer: null means silence.
//   tov::utils::BufferLogger log(true, true, false);
//   TOV_LOG_WARNING(&log, "unused key " << key);

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class ErrorType;

class TOV_UTILS_API AbstractLogger {
public:
    AbstractLogger(bool logWarning, bool logInfo, bool logTrace);
    virtual ~AbstractLogger();

    virtual void resetErrors();

    bool isLoggingTrace() const;
    bool isLoggingInfo() const;
    bool isLoggingWarning() const;

    void logTrace(const char* file, unsigned int line, const char* message);
    void logInfo(const char* file, unsigned int line, const char* message);
    void logWarning(const char* file, unsigned int line, const char* message);
    // Marks the logger as having errors, then hands the message on; not filtered.
    void logError(const ErrorType& type, const char* file, unsigned int line, const char* message);

    bool hasErrors() const;

protected:
    virtual void doLogTrace(const char* file, unsigned int line, const char* message);
    virtual void doLogInfo(const char* file, unsigned int line, const char* message);
    virtual void doLogWarning(const char* file, unsigned int line, const char* message);
    virtual void doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message) = 0;

    bool loggingWarning;
    bool loggingInfo;
    bool loggingTrace;
    bool hasError;
};

} // namespace utils
} // namespace tov
