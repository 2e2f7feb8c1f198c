#pragma once
// A logger for tests that may be written from several threads (the HTTP worker among them): it keeps
// each message as "<level letter>: <text>" under a lock.

#include <tov/utils/AbstractLogger.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

namespace tov {
namespace testing {

class LockedLogger : public utils::AbstractLogger {
public:
    LockedLogger(bool logWarning = true, bool logInfo = true, bool logTrace = false)
        : AbstractLogger(logWarning, logInfo, logTrace)
    {
    }

    std::vector<std::string> getMessages() const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return messages;
    }
    // Whether a message is exactly `message` ("w: No register engine ...").
    bool has(const std::string& message) const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return std::find(messages.begin(), messages.end(), message) != messages.end();
    }
    std::size_t count(char level) const
    {
        std::lock_guard<std::mutex> guard(mutex);
        return static_cast<std::size_t>(
            std::count_if(messages.begin(), messages.end(), [level](const std::string& m) { return m[0] == level; }));
    }
    void clear()
    {
        std::lock_guard<std::mutex> guard(mutex);
        messages.clear();
    }

protected:
    void doLogTrace(const char*, unsigned int, const char* message) override { append('t', message); }
    void doLogInfo(const char*, unsigned int, const char* message) override { append('i', message); }
    void doLogWarning(const char*, unsigned int, const char* message) override { append('w', message); }
    void doLogError(const utils::ErrorType&, const char*, unsigned int, const char* message) override
    {
        append('e', message);
    }

private:
    void append(char level, const char* message)
    {
        std::lock_guard<std::mutex> guard(mutex);
        messages.push_back(std::string(1, level) + ": " + message);
    }

    mutable std::mutex mutex;
    std::vector<std::string> messages;
};

} // namespace testing
} // namespace tov
