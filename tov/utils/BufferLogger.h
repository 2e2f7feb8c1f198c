#pragma once
// BufferLogger: keeps messages in arrival order until they are flushed into another logger, whose
// filters then apply. Belongs to one thread.
//   tov::utils::BufferLogger buffer(true, true, true);
//   runStep(&buffer); buffer.flush(facilities.getLogger());

#include <tov/utils/AbstractLogger.h>
#include <tov/utils/Containers.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {

class TOV_UTILS_API BufferLogger : public AbstractLogger {
public:
    struct Message {
        char type = 0; // 't', 'i', 'w' or 'e'
        String file;
        unsigned int line = 0;
        String message;
        ErrorType errorType; // only for 'e'
    };

    BufferLogger(bool logWarning, bool logInfo, bool logTrace);

    // Hands every message on, in order, then clears this buffer and its error flag.
    void flush(AbstractLogger& target);
    void clear();

    const Vector<Message>& getMessages() const;

protected:
    void doLogTrace(const char* file, unsigned int line, const char* message) override;
    void doLogInfo(const char* file, unsigned int line, const char* message) override;
    void doLogWarning(const char* file, unsigned int line, const char* message) override;
    void doLogError(const ErrorType& type, const char* file, unsigned int line, const char* message) override;

private:
    Message& append(char type, const char* file, unsigned int line, const char* message);

    Vector<Message> messages;
};

} // namespace utils
} // namespace tov
