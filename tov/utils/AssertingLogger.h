#pragma once
// AssertingLogger: turns a logged error into a broken contract (an assertion); other levels are off.
//   tov::utils::AssertingLogger strict;
//   uuid.set(literal, &strict);   // a malformed literal fails an assertion

#include <tov/utils/AbstractLogger.h>
#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class TOV_UTILS_API AssertingLogger : public AbstractLogger {
public:
    AssertingLogger();

protected:
    void doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message) override;
};

} // namespace utils
} // namespace tov
