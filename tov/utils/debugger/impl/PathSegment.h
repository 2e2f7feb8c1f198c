#pragma once
// PathSegment: the first segment of what remains of a resource path, as the engines of the library walk
// their trees, with the keyword and number reading they share. Private to the library.
//   PathSegment segment;
//   if (segment.take(path, length) && segment.selects("entities")) walk(path + segment.rest, length - segment.rest);

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

struct PathSegment {
    // False on a malformed path. An empty remainder gives an empty segment.
    bool take(const char* path, unsigned int size);
    // Any prefix of the keyword selects it, the empty segment included: clients use short forms.
    bool selects(const char* keyword) const;
    // Whether the two segments agree over the shorter of their lengths, so that either may be a prefix
    // of the other, or empty: how a request segment matches one of an engine's path.
    bool sharesPrefix(const PathSegment& other) const;
    // The leading decimal digits, as strtoul reads them: no digits read as 0 and a tail is ignored.
    unsigned long readLeadingNumber() const;
    // True only when the whole segment is one decimal number, as strtoul reads it.
    bool readWholeNumber(unsigned int& number) const;

    // Not terminated at `length`.
    const char* text = nullptr;
    unsigned int start = 0;
    unsigned int length = 0;
    // Where the remainder of the path begins, from the start of the path given to take.
    unsigned int rest = 0;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
