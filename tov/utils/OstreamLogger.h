#pragma once
// OstreamLogger: writes each level to its own stream (null: that level is off), one whole line at a
// time under one mutex, so lines of different threads never interleave.
//   tov::utils::OstreamLogger log(&std::cerr, &std::cout, nullptr, nullptr);   // errors and warnings
//   line: "file.cpp(12): [warning] text"

#include <tov/utils/AbstractLogger.h>
#include <tov/utils/Export.h>
#include <tov/utils/Mutex.h>

#include <iosfwd>

namespace tov {
namespace utils {

class TOV_UTILS_API OstreamLogger : public AbstractLogger {
public:
    // The streams are not owned. The warning, info and trace flags are on where their stream is given.
    OstreamLogger(std::ostream* errorStream, std::ostream* warningStream, std::ostream* infoStream,
                  std::ostream* traceStream);
    // Waits for a line in progress before the mutex goes.
    ~OstreamLogger() override;

    void resetErrors() override;

protected:
    void doLogTrace(const char* file, unsigned int line, const char* message) override;
    void doLogInfo(const char* file, unsigned int line, const char* message) override;
    void doLogWarning(const char* file, unsigned int line, const char* message) override;
    void doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message) override;

private:
    void writeLine(std::ostream* stream, const char* file, unsigned int line, const char* levelText,
                   const char* message);

    Mutex mutex;
    std::ostream* errorStream;
    std::ostream* warningStream;
    std::ostream* infoStream;
    std::ostream* traceStream;
};

} // namespace utils
} // namespace tov
