#pragma once
// Character classes of locations, shared by the Uri setters and the request grammar. ASCII is decided
// without a call into the C library: these run for every character of every request path, and ASCII
// classifies the same in every locale.

#include <cctype>

namespace tov {
namespace utils {
namespace impl {

inline bool isUriLetter(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= 0x80 && std::isalpha(c) != 0);
}

inline bool isUriAlphanumeric(unsigned char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           (c >= 0x80 && std::isalnum(c) != 0);
}

inline bool isUriUnreserved(unsigned char c)
{
    return isUriAlphanumeric(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

inline bool isUriSubDelimiter(unsigned char c)
{
    switch (c) {
    case '!':
    case '$':
    case '&':
    case '\'':
    case '(':
    case ')':
    case '*':
    case '+':
    case ',':
    case ';':
    case '=':
        return true;
    default:
        return false;
    }
}

} // namespace impl
} // namespace utils
} // namespace tov
