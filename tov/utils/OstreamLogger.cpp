#include <tov/utils/OstreamLogger.h>

#include <tov/utils/ErrorType.h>
#include <tov/utils/ScopedMutex.h>

#include <cstring>
#include <ostream>

namespace tov {
namespace utils {

OstreamLogger::OstreamLogger(std::ostream* errorStream, std::ostream* warningStream, std::ostream* infoStream,
                             std::ostream* traceStream)
    : AbstractLogger(warningStream != nullptr, infoStream != nullptr, traceStream != nullptr), mutex(Mutex::Normal),
      errorStream(errorStream), warningStream(warningStream), infoStream(infoStream), traceStream(traceStream)
{
}

OstreamLogger::~OstreamLogger()
{
    mutex.lock();
    mutex.unlock();
}

void OstreamLogger::resetErrors()
{
    ScopedMutex guard(mutex);
    AbstractLogger::resetErrors();
}

void OstreamLogger::doLogTrace(const char* file, unsigned int line, const char* message)
{
    writeLine(traceStream, file, line, "trace", message);
}

void OstreamLogger::doLogInfo(const char* file, unsigned int line, const char* message)
{
    writeLine(infoStream, file, line, "info", message);
}

void OstreamLogger::doLogWarning(const char* file, unsigned int line, const char* message)
{
    writeLine(warningStream, file, line, "warning", message);
}

void OstreamLogger::doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message)
{
    writeLine(errorStream, file, line, type.getCaption(), message);
}

void OstreamLogger::writeLine(std::ostream* stream, const char* file, unsigned int line, const char* levelText,
                              const char* message)
{
    if (stream == nullptr) {
        return;
    }
    ScopedMutex guard(mutex);
    stream->write(file, static_cast<std::streamsize>(std::strlen(file)));
    *stream << '(' << line << "): [";
    stream->write(levelText, static_cast<std::streamsize>(std::strlen(levelText)));
    *stream << "] ";
    stream->write(message, static_cast<std::streamsize>(std::strlen(message)));
    *stream << std::endl;
}

} // namespace utils
} // namespace tov
