#include <tov/utils/StringPool.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>

namespace tov {
namespace utils {

StringPool::StringPool() : StringPool(0, 128) {}

StringPool::StringPool(unsigned int initialCount, unsigned int maximumLength) : maximumLength(maximumLength)
{
    for (unsigned int i = 0; i < initialCount; ++i) {
        strings.push_back(TOV_NEW String());
    }
}

StringPool::StringPool(const StringPool& other) : maximumLength(other.maximumLength) {}

StringPool::~StringPool()
{
    for (String* string : strings) {
        TOV_DELETE(string);
    }
}

String* StringPool::obtain()
{
    if (strings.empty()) {
        return TOV_NEW String();
    }
    String* string = strings.back();
    strings.pop_back();
    return string;
}

void StringPool::recycle(String* string)
{
    TOV_ASSERT(string != nullptr, "null pointer not allowed for parameter 'string'");
    if (string == nullptr) {
        return;
    }
    if (string->size() <= maximumLength) {
        string->resize(0);
        strings.push_back(string);
    } else {
        TOV_DELETE(string);
    }
}

unsigned int StringPool::size() const
{
    return static_cast<unsigned int>(strings.size());
}

} // namespace utils
} // namespace tov
