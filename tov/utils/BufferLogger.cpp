#include <tov/utils/BufferLogger.h>

namespace tov {
namespace utils {

BufferLogger::BufferLogger(bool logWarning, bool logInfo, bool logTrace) : AbstractLogger(logWarning, logInfo, logTrace)
{
}

void BufferLogger::flush(AbstractLogger& target)
{
    for (const Message& entry : messages) {
        const char* file = entry.file.c_str();
        const char* text = entry.message.c_str();
        switch (entry.type) {
        case 'i':
            target.logInfo(file, entry.line, text);
            break;
        case 't':
            target.logTrace(file, entry.line, text);
            break;
        case 'w':
            target.logWarning(file, entry.line, text);
            break;
        default:
            target.logError(entry.errorType, file, entry.line, text);
            break;
        }
    }
    clear();
}

void BufferLogger::clear()
{
    resetErrors();
    messages.clear();
}

const Vector<BufferLogger::Message>& BufferLogger::getMessages() const
{
    return messages;
}

void BufferLogger::doLogTrace(const char* file, unsigned int line, const char* message)
{
    append('t', file, line, message);
}

void BufferLogger::doLogInfo(const char* file, unsigned int line, const char* message)
{
    append('i', file, line, message);
}

void BufferLogger::doLogWarning(const char* file, unsigned int line, const char* message)
{
    append('w', file, line, message);
}

void BufferLogger::doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message)
{
    append('e', file, line, message).errorType = type;
}

BufferLogger::Message& BufferLogger::append(char type, const char* file, unsigned int line, const char* message)
{
    messages.emplace_back();
    Message& entry = messages.back();
    entry.type = type;
    entry.file = file;
    entry.line = line;
    entry.message = message;
    return entry;
}

} // namespace utils
} // namespace tov
