#include <tov/utils/debugger/impl/WarningLogger.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

WarningLogger::WarningLogger(AbstractLogger& logger)
    : AbstractLogger(logger.isLoggingWarning(), logger.isLoggingInfo(), logger.isLoggingTrace()), logger(logger)
{
}

WarningLogger::~WarningLogger() = default;

void WarningLogger::doLogTrace(const char* file, unsigned int line, const char* message)
{
    logger.logTrace(file, line, message);
}

void WarningLogger::doLogInfo(const char* file, unsigned int line, const char* message)
{
    logger.logInfo(file, line, message);
}

void WarningLogger::doLogWarning(const char* file, unsigned int line, const char* message)
{
    logger.logWarning(file, line, message);
}

void WarningLogger::doLogError(const ErrorType&, const char* file, unsigned int line, const char* message)
{
    logger.logWarning(file, line, message);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
