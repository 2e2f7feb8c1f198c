#pragma once
// Records assertion messages and returns, for tests of code that must carry on behind an assertion.

#include <tov/utils/Assertion.h>

#include <string>
#include <vector>

namespace tov {
namespace testing {

class RecordingAssertions {
public:
    RecordingAssertions() : previous(utils::getAssertionFailedFunction())
    {
        messages().clear();
        utils::setAssertionFailedFunction(&record);
    }
    ~RecordingAssertions() { utils::setAssertionFailedFunction(previous); }

    static std::vector<std::string>& messages()
    {
        static std::vector<std::string> recorded;
        return recorded;
    }

private:
    static void record(const char*, unsigned int, const char* message) { messages().push_back(message); }

    utils::AssertionFailedFunction previous;
};

} // namespace testing
} // namespace tov
