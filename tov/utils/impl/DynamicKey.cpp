#include <tov/utils/impl/DynamicKey.h>

namespace tov {
namespace utils {
namespace impl {

bool isValidChildKey(const char* key, unsigned int length)
{
    if (length == 0) {
        return false;
    }
    for (unsigned int i = 0; i < length; ++i) {
        const char c = key[i];
        if (c == '.' || c == '[' || c == ']' || c == '\0') {
            return false;
        }
    }
    return true;
}

char findPathCharacter(const char* key, unsigned int length)
{
    for (unsigned int i = 0; i < length; ++i) {
        const char c = key[i];
        if (c == '.' || c == '[' || c == ']') {
            return c;
        }
    }
    return '\0';
}

long long truncateToInteger(double value)
{
    // 2^63 is exact in a double; every double below it converts without overflow.
    const double limit = 9223372036854775808.0;
    if (value != value) {
        return 0;
    }
    if (value >= limit) {
        return 0x7FFFFFFFFFFFFFFFLL;
    }
    if (value < -limit) {
        return -0x7FFFFFFFFFFFFFFFLL - 1;
    }
    return static_cast<long long>(value);
}

} // namespace impl
} // namespace utils
} // namespace tov
