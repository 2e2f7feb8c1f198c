#pragma once
// ErrorType: the category of a reportable failure, a Uuid with a short caption; equal when the ids are.
//   TOV_LOG_ERROR(logger, tov::utils::error::invalidArgument, "bad count " << count);
//   logger line: "file.cpp(12): [invalid argument] bad count 3"

#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/Uuid.h>

namespace tov {
namespace utils {

class TOV_UTILS_API ErrorType {
public:
    // The invalid id with the caption "no error".
    ErrorType();
    ErrorType(const Uuid& id, const char* caption);

    const Uuid& getId() const;
    // Valid for as long as this ErrorType.
    const char* getCaption() const;

    bool operator==(const ErrorType& other) const;
    bool operator!=(const ErrorType& other) const;

private:
    Uuid id;
    String caption;
};

namespace error {
extern TOV_UTILS_API const ErrorType invalidArgument;
extern TOV_UTILS_API const ErrorType invalidData;
extern TOV_UTILS_API const ErrorType invalidOperation;
extern TOV_UTILS_API const ErrorType invalidName;
extern TOV_UTILS_API const ErrorType invalidConfiguration;
extern TOV_UTILS_API const ErrorType contractViolation;
extern TOV_UTILS_API const ErrorType fileNotFound;
extern TOV_UTILS_API const ErrorType fileFormatCorrupted;
extern TOV_UTILS_API const ErrorType ioProblem;
extern TOV_UTILS_API const ErrorType threadError;
extern TOV_UTILS_API const ErrorType userCodeException;
extern TOV_UTILS_API const ErrorType stringHashCollision;
extern TOV_UTILS_API const ErrorType unknownError;
} // namespace error

} // namespace utils
} // namespace tov
