#include <tov/utils/debugger/impl/PathSegment.h>

#include <tov/utils/Uri.h>

#include <cstdlib>
#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

// Longer than any number that fits, so that a longer segment, which has no number of its own, is not
// read beyond its end: the segment is not terminated where it ends.
constexpr unsigned int maxDigits = 31;

unsigned long readDecimal(const char* text, unsigned int length, unsigned int& used)
{
    char digits[maxDigits + 1];
    const unsigned int copied = length < maxDigits ? length : maxDigits;
    std::memcpy(digits, text, copied);
    digits[copied] = '\0';
    char* end = nullptr;
    const unsigned long value = std::strtoul(digits, &end, 10);
    used = static_cast<unsigned int>(end - digits);
    return value;
}

} // namespace

bool PathSegment::take(const char* path, unsigned int size)
{
    if (!Uri::retrieveFirstPathSegment(path, size, start, length)) {
        return false;
    }
    text = path + start;
    rest = start + length;
    return true;
}

bool PathSegment::selects(const char* keyword) const
{
    return std::strncmp(keyword, text, length) == 0;
}

bool PathSegment::sharesPrefix(const PathSegment& other) const
{
    return std::strncmp(text, other.text, length < other.length ? length : other.length) == 0;
}

unsigned long PathSegment::readLeadingNumber() const
{
    unsigned int used = 0;
    return readDecimal(text, length, used);
}

bool PathSegment::readWholeNumber(unsigned int& number) const
{
    if (length > maxDigits) {
        return false;
    }
    unsigned int used = 0;
    number = static_cast<unsigned int>(readDecimal(text, length, used));
    return used == length;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
