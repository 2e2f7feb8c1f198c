#pragma once
// Uri: a place in a simulation, `scheme:path/segments.extension?query#fragment`, every part optional.
// The parts live in one buffer, each followed by a NUL, so getters hand out terminated texts for free.
//   tov::utils::Uri location = tov::utils::Uri::create("tov:agents/forager.behavior?step=3#seek");
//   location.getPathSegment(1);   // "forager"; location.getExtension() is "behavior"

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>

#include <iosfwd>

namespace tov {
namespace utils {

class AbstractLogger;
class AbstractObjectBuilder;

class TOV_UTILS_API Uri {
public:
    Uri();
    Uri(const Uri& other);
    Uri& operator=(const Uri& other);
    ~Uri();

    void swap(Uri& other);
    // Back to the empty URI.
    void clear();

    // For literals of the program: a text that does not parse fails an assertion.
    static Uri create(const char* uri);
    static Uri create(const char* scheme, const char* path, const char* extension, const char* query,
                      const char* fragment);

    // The setters report a refused character to `logger` (may be null) and return false. A part setter
    // then leaves the URI as it was; the `set` forms leave it empty.
    [[nodiscard]] bool set(const char* uri, AbstractLogger* logger);
    [[nodiscard]] bool set(const char* uri, unsigned int length, AbstractLogger* logger);
    [[nodiscard]] bool set(const char* scheme, unsigned int schemeLength, const char* path, unsigned int pathLength,
                           const char* extension, unsigned int extensionLength, const char* query,
                           unsigned int queryLength, const char* fragment, unsigned int fragmentLength,
                           AbstractLogger* logger);
    [[nodiscard]] bool set(const char* scheme, const char* path, const char* extension, const char* query,
                           const char* fragment, AbstractLogger* logger);

    [[nodiscard]] bool setScheme(const char* scheme, AbstractLogger* logger);
    [[nodiscard]] bool setScheme(const char* scheme, unsigned int length, AbstractLogger* logger);
    // Splits on '/'; empty segments, leading and trailing slashes vanish.
    [[nodiscard]] bool setPath(const char* path, AbstractLogger* logger);
    [[nodiscard]] bool setPath(const char* path, unsigned int length, AbstractLogger* logger);
    [[nodiscard]] bool setPathSegments(const char* const* segments, const unsigned int* lengths, unsigned int count,
                                       AbstractLogger* logger);
    [[nodiscard]] bool setExtension(const char* extension, AbstractLogger* logger);
    [[nodiscard]] bool setExtension(const char* extension, unsigned int length, AbstractLogger* logger);
    [[nodiscard]] bool setQuery(const char* query, AbstractLogger* logger);
    [[nodiscard]] bool setQuery(const char* query, unsigned int length, AbstractLogger* logger);
    [[nodiscard]] bool setFragment(const char* fragment, AbstractLogger* logger);
    [[nodiscard]] bool setFragment(const char* fragment, unsigned int length, AbstractLogger* logger);

    bool empty() const;
    bool hasScheme() const;
    bool hasPath() const;
    unsigned int countPathSegments() const;
    bool hasExtension() const;
    bool hasQuery() const;
    bool hasFragment() const;

    // Pointers into the URI, never null (an absent part is ""), valid until the next change.
    const char* getScheme() const;
    // Index 0 is legal on a URI without path and gives "".
    const char* getPathSegment(unsigned int index) const;
    const char* getExtension() const;
    const char* getQuery() const;
    const char* getFragment() const;
    // The parts with their terminators, scheme first; the length leaves out the last terminator.
    const char* getRawString() const;
    unsigned int getRawStringLength() const;

    unsigned int computeStringLength() const;
    // `buffer` holds computeStringLength() + 1 characters.
    void computeString(char* buffer) const;
    // A buffer of the memory service that the caller releases with TOV_DELETE_ARRAY.
    char* computeString() const;
    unsigned int computePathStringLength() const;
    // The segments joined by '/', without a leading one; `buffer` holds computePathStringLength() + 1.
    void computePathString(char* buffer) const;

    // Part by part as stored, case included; a URI without scheme sorts before any with one.
    bool operator==(const Uri& other) const;
    bool operator!=(const Uri& other) const;
    bool operator<(const Uri& other) const;

    // Finds the first non-empty segment of a request path without building a Uri. True with the segment,
    // or with offset `size` and length 0 when there is none; false on a malformed path, leaving
    // `offset` and `length` alone. Only the text up to the end of that segment is read.
    static bool retrieveFirstPathSegment(const char* path, unsigned int size, unsigned int& offset,
                                         unsigned int& length);
    // Writes a query ("a=1&b=x&c", no leading '?') as one object: a key without value or with an empty
    // one is true, a value that reads whole as an integer or a real is that number, any other a string,
    // escapes as they stand; pairs with an empty key are left out. False when the text does not parse
    // to its end (what was read is written all the same) or the builder refuses to begin or end.
    static bool parseQuery(const char* query, unsigned int size, AbstractObjectBuilder& builder);

private:
    class PathPieces;

    [[nodiscard]] bool replacePath(PathPieces& pieces, AbstractLogger* logger);
    // Whether a text given to a setter lies in this URI's own buffer, which the setter is about to move.
    bool refersToOwnText(const char* text, unsigned int length) const;
    void replaceRange(unsigned int begin, unsigned int oldLength, const char* text, unsigned int length);

    Vector<char> rawString;
    Vector<unsigned int> pathSegmentOffsets;
    unsigned int extensionOffset;
    unsigned int queryOffset;
    unsigned int fragmentOffset;
};

TOV_UTILS_API std::ostream& operator<<(std::ostream& stream, const Uri& uri);

} // namespace utils
} // namespace tov
