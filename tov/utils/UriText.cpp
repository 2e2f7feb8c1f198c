// The read side of Uri: queries on the parts, getters, the text written back, comparison.
#include <tov/utils/Uri.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>
#include <tov/utils/impl/UriMessages.h>

#include <algorithm>
#include <cstring>
#include <ostream>

namespace tov {
namespace utils {

bool Uri::empty() const
{
    return rawString.size() < 6;
}

bool Uri::hasScheme() const
{
    return pathSegmentOffsets[0] > 1;
}

bool Uri::hasPath() const
{
    return rawString[pathSegmentOffsets[0]] != '\0';
}

unsigned int Uri::countPathSegments() const
{
    return hasPath() ? static_cast<unsigned int>(pathSegmentOffsets.size()) : 0;
}

bool Uri::hasExtension() const
{
    return extensionOffset + 1 < queryOffset;
}

bool Uri::hasQuery() const
{
    return queryOffset + 1 < fragmentOffset;
}

bool Uri::hasFragment() const
{
    return fragmentOffset + 1 < rawString.size();
}

const char* Uri::getScheme() const
{
    return rawString.data();
}

const char* Uri::getPathSegment(unsigned int index) const
{
    TOV_ASSERT(index < pathSegmentOffsets.size(), "No " << index << "th path segment.");
    // Behind an assertion that returns: the last terminator is an empty text that stays valid.
    if (index >= pathSegmentOffsets.size()) {
        return rawString.data() + rawString.size() - 1;
    }
    return rawString.data() + pathSegmentOffsets[index];
}

const char* Uri::getExtension() const
{
    return rawString.data() + extensionOffset;
}

const char* Uri::getQuery() const
{
    return rawString.data() + queryOffset;
}

const char* Uri::getFragment() const
{
    return rawString.data() + fragmentOffset;
}

const char* Uri::getRawString() const
{
    return rawString.data();
}

unsigned int Uri::getRawStringLength() const
{
    return static_cast<unsigned int>(rawString.size()) - 1;
}

unsigned int Uri::computeStringLength() const
{
    unsigned int length = static_cast<unsigned int>(rawString.size()) - 1;
    length -= hasScheme() ? 0 : 1;
    length -= hasExtension() ? 0 : 1;
    length -= hasQuery() ? 0 : 1;
    length -= hasFragment() ? 0 : 1;
    return length;
}

void Uri::computeString(char* buffer) const
{
    TOV_ASSERT(buffer != nullptr, impl::uriNullStringMessage);
    if (buffer == nullptr) {
        return;
    }
    const unsigned int last = static_cast<unsigned int>(rawString.size()) - 1;
    char* out = buffer;
    for (unsigned int i = 0; i < last; ++i) {
        const char c = rawString[i];
        if (c != '\0') {
            *out++ = c;
        } else if (i < pathSegmentOffsets[0]) {
            if (hasScheme()) {
                *out++ = ':';
            }
        } else if (i < extensionOffset - 1) {
            // A terminator strictly inside the path only stands between two segments.
            *out++ = '/';
        } else if (i == extensionOffset - 1) {
            if (hasExtension()) {
                *out++ = '.';
            }
        } else if (i == queryOffset - 1) {
            if (hasQuery()) {
                *out++ = '?';
            }
        } else if (i == fragmentOffset - 1) {
            if (hasFragment()) {
                *out++ = '#';
            }
        }
    }
    *out = '\0';
}

char* Uri::computeString() const
{
    char* buffer = TOV_NEW_ARRAY(computeStringLength() + 1);
    computeString(buffer);
    return buffer;
}

unsigned int Uri::computePathStringLength() const
{
    return extensionOffset - pathSegmentOffsets[0] - 1;
}

void Uri::computePathString(char* buffer) const
{
    TOV_ASSERT(buffer != nullptr, impl::uriNullStringMessage);
    if (buffer == nullptr) {
        return;
    }
    const unsigned int length = computePathStringLength();
    const char* path = rawString.data() + pathSegmentOffsets[0];
    for (unsigned int i = 0; i < length; ++i) {
        buffer[i] = path[i] != '\0' ? path[i] : '/';
    }
    buffer[length] = '\0';
}

bool Uri::operator==(const Uri& other) const
{
    return rawString.size() == other.rawString.size() &&
           std::memcmp(rawString.data(), other.rawString.data(), rawString.size()) == 0;
}

bool Uri::operator!=(const Uri& other) const
{
    return !(*this == other);
}

bool Uri::operator<(const Uri& other) const
{
    return std::lexicographical_compare(rawString.begin(), rawString.end(), other.rawString.begin(),
                                        other.rawString.end());
}

std::ostream& operator<<(std::ostream& stream, const Uri& uri)
{
    char* text = uri.computeString();
    stream << text;
    TOV_DELETE_ARRAY(text);
    return stream;
}


} // namespace utils
} // namespace tov
