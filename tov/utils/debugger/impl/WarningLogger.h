#pragma once
// WarningLogger: wraps a logger and hands errors on to it as warnings, so that a failure that is the
// client's (a bad request body) does not mark the wrapped logger with an error. Its own hasErrors
// still tells that one came by.
//   WarningLogger relaxed(facilities.getLogger());
//   deserializeDynamicObjectFromJson(object, body, &relaxed); if (relaxed.hasErrors()) { ... }

#include <tov/utils/AbstractLogger.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class WarningLogger : public AbstractLogger {
public:
    // Takes the trace, info and warning settings that `logger` has now; `logger` must outlive this one.
    explicit WarningLogger(AbstractLogger& logger);
    ~WarningLogger() override;

protected:
    void doLogTrace(const char* file, unsigned int line, const char* message) override;
    void doLogInfo(const char* file, unsigned int line, const char* message) override;
    void doLogWarning(const char* file, unsigned int line, const char* message) override;
    // The category is dropped.
    void doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message) override;

private:
    AbstractLogger& logger;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
