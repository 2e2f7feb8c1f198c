#include <tov/utils/AssertingLogger.h>

#include <tov/utils/Assertion.h>

namespace tov {
namespace utils {

AssertingLogger::AssertingLogger() : AbstractLogger(false, false, false) {}

void AssertingLogger::doLogError(const ErrorType&, const char* file, unsigned int line, const char* message)
{
    assertionFailed(file, line, message);
}

} // namespace utils
} // namespace tov
