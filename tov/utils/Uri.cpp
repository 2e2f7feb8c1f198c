#include <tov/utils/Uri.h>

#include <tov/utils/AssertingLogger.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/ErrorType.h>
#include <tov/utils/Logging.h>
#include <tov/utils/impl/UriCharacters.h>
#include <tov/utils/impl/UriMessages.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>

namespace tov {
namespace utils {

namespace {

const char schemePart[] = "scheme";
const char pathSegmentPart[] = "path segment";
const char extensionPart[] = "extension";
const char queryPart[] = "query";
const char fragmentPart[] = "fragment";

void logRefusedCharacter(AbstractLogger* logger, const char* part, char character, unsigned int index)
{
    TOV_LOG_ERROR(logger, error::invalidArgument,
                  "Unexpected character in the " << part << " definition: '" << character << "' #" << index << ".");
}

void logRefusedPathCharacter(AbstractLogger* logger, char character, unsigned int segment, unsigned int index)
{
    TOV_LOG_ERROR(logger, error::invalidArgument,
                  "Unexpected character in the " << pathSegmentPart << " definition: '" << character << "' #" << segment
                                                 << "," << index << ".");
}

bool isSchemeCharacter(char character, unsigned int index)
{
    const unsigned char c = static_cast<unsigned char>(character);
    if (c == '+' || c == '-' || c == '.') {
        return true;
    }
    return index == 0 ? impl::isUriLetter(c) : impl::isUriAlphanumeric(c);
}

bool isPathSegmentCharacter(char character)
{
    const unsigned char c = static_cast<unsigned char>(character);
    return c == ':' || c == '@' || impl::isUriUnreserved(c) || impl::isUriSubDelimiter(c);
}

bool isExtensionCharacter(char character)
{
    return impl::isUriAlphanumeric(static_cast<unsigned char>(character));
}

bool isQueryOrFragmentCharacter(char character)
{
    const unsigned char c = static_cast<unsigned char>(character);
    return c == '/' || c == '?' || impl::isUriUnreserved(c) || impl::isUriSubDelimiter(c);
}

// Checks every character of a part; logs the first refused one.
bool validatePart(const char* text, unsigned int length, bool (*accepts)(char), const char* part,
                  AbstractLogger* logger)
{
    for (unsigned int i = 0; i < length; ++i) {
        if (!accepts(text[i])) {
            logRefusedCharacter(logger, part, text[i], i);
            return false;
        }
    }
    return true;
}

const char* findFirst(const char* begin, const char* end, char character)
{
    return std::find(begin, end, character);
}

const char* findLast(const char* begin, const char* end, char character)
{
    for (const char* p = end; p != begin; --p) {
        if (p[-1] == character) {
            return p - 1;
        }
    }
    return end;
}

unsigned int lengthOf(const char* begin, const char* end)
{
    return static_cast<unsigned int>(end - begin);
}

} // namespace

// The pieces of a new path, given as arrays or split from one text on '/'. Both setters walk them twice:
// once to validate and measure, once to copy, so that a refusal changes nothing.
class Uri::PathPieces {
public:
    PathPieces(const char* const* segments, const unsigned int* lengths, unsigned int count)
        : segments(segments), lengths(lengths), count(count)
    {
    }

    PathPieces(const char* path, unsigned int length) : path(path), pathLength(length) {}

    void rewind() { next_ = 0; }

    bool next(const char*& piece, unsigned int& length)
    {
        if (path == nullptr) {
            if (next_ == count) {
                return false;
            }
            piece = segments[next_];
            length = lengths[next_];
            ++next_;
            return true;
        }
        // Slashes outside a segment are skipped, so empty segments and outer slashes vanish.
        while (next_ < pathLength && path[next_] == '/') {
            ++next_;
        }
        if (next_ == pathLength) {
            return false;
        }
        const unsigned int begin = next_;
        while (next_ < pathLength && path[next_] != '/') {
            ++next_;
        }
        piece = path + begin;
        length = next_ - begin;
        return true;
    }

private:
    const char* const* segments = nullptr;
    const unsigned int* lengths = nullptr;
    unsigned int count = 0;
    const char* path = nullptr;
    unsigned int pathLength = 0;
    unsigned int next_ = 0;
};

Uri::Uri() : rawString(5, '\0'), pathSegmentOffsets(1, 1), extensionOffset(2), queryOffset(3), fragmentOffset(4) {}

Uri::Uri(const Uri& other) = default;

Uri& Uri::operator=(const Uri& other) = default;

Uri::~Uri() = default;

void Uri::swap(Uri& other)
{
    rawString.swap(other.rawString);
    pathSegmentOffsets.swap(other.pathSegmentOffsets);
    std::swap(extensionOffset, other.extensionOffset);
    std::swap(queryOffset, other.queryOffset);
    std::swap(fragmentOffset, other.fragmentOffset);
}

void Uri::clear()
{
    // assign keeps the capacity, so a Uri that is parsed again and again stops allocating.
    rawString.assign(5, '\0');
    pathSegmentOffsets.assign(1, 1);
    extensionOffset = 2;
    queryOffset = 3;
    fragmentOffset = 4;
}

Uri Uri::create(const char* uri)
{
    AssertingLogger logger;
    Uri result;
    // A refused text asserts through `logger`; should the assertion return, the Uri stays empty.
    static_cast<void>(result.set(uri, &logger));
    return result;
}

Uri Uri::create(const char* scheme, const char* path, const char* extension, const char* query, const char* fragment)
{
    AssertingLogger logger;
    Uri result;
    static_cast<void>(result.set(scheme, path, extension, query, fragment, &logger));
    return result;
}

bool Uri::set(const char* uri, AbstractLogger* logger)
{
    TOV_ASSERT(uri != nullptr, impl::uriNullStringMessage);
    // Behind an assertion that returns, a null text must not be read.
    if (uri == nullptr) {
        return false;
    }
    return set(uri, static_cast<unsigned int>(std::strlen(uri)), logger);
}

bool Uri::set(const char* uri, unsigned int length, AbstractLogger* logger)
{
    TOV_ASSERT(uri != nullptr, impl::uriNullStringMessage);
    if (uri == nullptr) {
        return false;
    }
    // Any text that starts in this URI's buffer, even an empty one: the scheme scan reads on past the length.
    if (refersToOwnText(uri, 1)) {
        Uri target;
        const bool result = target.set(uri, length, logger);
        swap(target);
        return result;
    }
    clear();
    const char* begin = uri;
    const char* end = uri + length;

    // The scan goes by the characters and not by `length`: it stops at the text's NUL at the latest.
    const char* schemeEnd = begin;
    while (*schemeEnd != '\0' && isSchemeCharacter(*schemeEnd, lengthOf(begin, schemeEnd))) {
        ++schemeEnd;
    }
    if (*schemeEnd != ':') {
        schemeEnd = begin;
    }
    const char* pathBegin = begin < schemeEnd ? schemeEnd + 1 : begin;
    // A scheme read past `length` would put the path's start behind the end, and every range below would
    // run backwards; the rest of the text is then empty.
    if (pathBegin > end) {
        pathBegin = end;
    }
    const char* fragmentMark = findFirst(pathBegin, end, '#');
    const char* queryMark = findFirst(pathBegin, fragmentMark, '?');
    const char* queryBegin = queryMark < fragmentMark ? queryMark + 1 : fragmentMark;
    const char* fragmentBegin = fragmentMark < end ? fragmentMark + 1 : end;
    // The last dot of the whole path, not only of its last segment.
    const char* extensionMark = findLast(pathBegin, queryMark, '.');
    const char* extensionBegin = extensionMark < queryMark ? extensionMark + 1 : queryMark;

    // Room for the text and the five terminators, so that parsing grows the buffer at most once.
    rawString.reserve(length + 5);
    return set(begin, lengthOf(begin, schemeEnd), pathBegin, lengthOf(pathBegin, extensionMark), extensionBegin,
               lengthOf(extensionBegin, queryMark), queryBegin, lengthOf(queryBegin, fragmentMark), fragmentBegin,
               lengthOf(fragmentBegin, end), logger);
}

bool Uri::set(const char* scheme, unsigned int schemeLength, const char* path, unsigned int pathLength,
              const char* extension, unsigned int extensionLength, const char* query, unsigned int queryLength,
              const char* fragment, unsigned int fragmentLength, AbstractLogger* logger)
{
    // Each part setter moves what lies behind its part, which would pull the ground from under a later
    // part taken from this very URI; such a set is made on a fresh one.
    if (refersToOwnText(scheme, schemeLength) || refersToOwnText(path, pathLength) ||
        refersToOwnText(extension, extensionLength) || refersToOwnText(query, queryLength) ||
        refersToOwnText(fragment, fragmentLength)) {
        Uri target;
        const bool result = target.set(scheme, schemeLength, path, pathLength, extension, extensionLength, query,
                                       queryLength, fragment, fragmentLength, logger);
        swap(target);
        return result;
    }
    if (setScheme(scheme, schemeLength, logger) && setPath(path, pathLength, logger) &&
        setExtension(extension, extensionLength, logger) && setQuery(query, queryLength, logger) &&
        setFragment(fragment, fragmentLength, logger)) {
        return true;
    }
    clear();
    return false;
}

bool Uri::set(const char* scheme, const char* path, const char* extension, const char* query, const char* fragment,
              AbstractLogger* logger)
{
    TOV_ASSERT(scheme != nullptr, impl::uriNullSchemeMessage);
    TOV_ASSERT(path != nullptr, impl::uriNullPathMessage);
    TOV_ASSERT(extension != nullptr, impl::uriNullExtensionMessage);
    TOV_ASSERT(query != nullptr, impl::uriNullQueryMessage);
    TOV_ASSERT(fragment != nullptr, impl::uriNullFragmentMessage);
    if (scheme == nullptr || path == nullptr || extension == nullptr || query == nullptr || fragment == nullptr) {
        return false;
    }
    return set(scheme, static_cast<unsigned int>(std::strlen(scheme)), path,
               static_cast<unsigned int>(std::strlen(path)), extension,
               static_cast<unsigned int>(std::strlen(extension)), query, static_cast<unsigned int>(std::strlen(query)),
               fragment, static_cast<unsigned int>(std::strlen(fragment)), logger);
}

bool Uri::setScheme(const char* scheme, AbstractLogger* logger)
{
    TOV_ASSERT(scheme != nullptr, impl::uriNullSchemeMessage);
    if (scheme == nullptr) {
        return false;
    }
    return setScheme(scheme, static_cast<unsigned int>(std::strlen(scheme)), logger);
}

bool Uri::setScheme(const char* scheme, unsigned int length, AbstractLogger* logger)
{
    for (unsigned int i = 0; i < length; ++i) {
        if (!isSchemeCharacter(scheme[i], i)) {
            logRefusedCharacter(logger, schemePart, scheme[i], i);
            return false;
        }
    }
    const unsigned int oldLength = pathSegmentOffsets[0] - 1;
    replaceRange(0, oldLength, scheme, length);
    for (unsigned int& offset : pathSegmentOffsets) {
        offset = offset - oldLength + length;
    }
    extensionOffset = extensionOffset - oldLength + length;
    queryOffset = queryOffset - oldLength + length;
    fragmentOffset = fragmentOffset - oldLength + length;
    return true;
}

bool Uri::setPath(const char* path, AbstractLogger* logger)
{
    TOV_ASSERT(path != nullptr, impl::uriNullPathMessage);
    if (path == nullptr) {
        return false;
    }
    return setPath(path, static_cast<unsigned int>(std::strlen(path)), logger);
}

bool Uri::setPath(const char* path, unsigned int length, AbstractLogger* logger)
{
    PathPieces pieces(path, length);
    if (refersToOwnText(path, length)) {
        Uri target(*this);
        const bool result = target.replacePath(pieces, logger);
        swap(target);
        return result;
    }
    return replacePath(pieces, logger);
}

bool Uri::setPathSegments(const char* const* segments, const unsigned int* lengths, unsigned int count,
                          AbstractLogger* logger)
{
    PathPieces pieces(segments, lengths, count);
    for (unsigned int i = 0; i < count; ++i) {
        if (refersToOwnText(segments[i], lengths[i])) {
            Uri target(*this);
            const bool result = target.replacePath(pieces, logger);
            swap(target);
            return result;
        }
    }
    return replacePath(pieces, logger);
}

bool Uri::replacePath(PathPieces& pieces, AbstractLogger* logger)
{
    const char* piece = nullptr;
    unsigned int pieceLength = 0;
    unsigned int count = 0;
    unsigned int newLength = 0;
    while (pieces.next(piece, pieceLength)) {
        for (unsigned int i = 0; i < pieceLength; ++i) {
            if (!isPathSegmentCharacter(piece[i])) {
                logRefusedPathCharacter(logger, piece[i], count, i);
                return false;
            }
        }
        newLength += pieceLength;
        ++count;
    }
    if (count != 0) {
        newLength += count - 1; // the separators, stored as NULs
    }

    const unsigned int begin = pathSegmentOffsets[0];
    const unsigned int oldLength = extensionOffset - 1 - begin;
    replaceRange(begin, oldLength, nullptr, newLength);
    extensionOffset = extensionOffset - oldLength + newLength;
    queryOffset = queryOffset - oldLength + newLength;
    fragmentOffset = fragmentOffset - oldLength + newLength;

    pathSegmentOffsets.resize(std::max(1u, count));
    pieces.rewind();
    unsigned int index = 0;
    while (pieces.next(piece, pieceLength)) {
        const unsigned int offset = pathSegmentOffsets[index];
        if (pieceLength != 0) {
            std::memcpy(rawString.data() + offset, piece, pieceLength);
        }
        rawString[offset + pieceLength] = '\0';
        if (++index < count) {
            pathSegmentOffsets[index] = offset + pieceLength + 1;
        }
    }
    return true;
}

bool Uri::setExtension(const char* extension, AbstractLogger* logger)
{
    TOV_ASSERT(extension != nullptr, impl::uriNullExtensionMessage);
    if (extension == nullptr) {
        return false;
    }
    return setExtension(extension, static_cast<unsigned int>(std::strlen(extension)), logger);
}

bool Uri::setExtension(const char* extension, unsigned int length, AbstractLogger* logger)
{
    if (!validatePart(extension, length, &isExtensionCharacter, extensionPart, logger)) {
        return false;
    }
    const unsigned int oldLength = queryOffset - 1 - extensionOffset;
    replaceRange(extensionOffset, oldLength, extension, length);
    queryOffset = queryOffset - oldLength + length;
    fragmentOffset = fragmentOffset - oldLength + length;
    return true;
}

bool Uri::setQuery(const char* query, AbstractLogger* logger)
{
    TOV_ASSERT(query != nullptr, impl::uriNullQueryMessage);
    if (query == nullptr) {
        return false;
    }
    return setQuery(query, static_cast<unsigned int>(std::strlen(query)), logger);
}

bool Uri::setQuery(const char* query, unsigned int length, AbstractLogger* logger)
{
    if (!validatePart(query, length, &isQueryOrFragmentCharacter, queryPart, logger)) {
        return false;
    }
    const unsigned int oldLength = fragmentOffset - 1 - queryOffset;
    replaceRange(queryOffset, oldLength, query, length);
    fragmentOffset = fragmentOffset - oldLength + length;
    return true;
}

bool Uri::setFragment(const char* fragment, AbstractLogger* logger)
{
    TOV_ASSERT(fragment != nullptr, impl::uriNullFragmentMessage);
    if (fragment == nullptr) {
        return false;
    }
    return setFragment(fragment, static_cast<unsigned int>(std::strlen(fragment)), logger);
}

bool Uri::setFragment(const char* fragment, unsigned int length, AbstractLogger* logger)
{
    if (!validatePart(fragment, length, &isQueryOrFragmentCharacter, fragmentPart, logger)) {
        return false;
    }
    if (refersToOwnText(fragment, length)) {
        const String copy(fragment, length);
        return setFragment(copy.data(), length, logger);
    }
    rawString.resize(fragmentOffset + length + 1);
    if (length != 0) {
        std::memcpy(rawString.data() + fragmentOffset, fragment, length);
    }
    rawString.back() = '\0';
    return true;
}

bool Uri::refersToOwnText(const char* text, unsigned int length) const
{
    const std::less<const char*> before;
    return length != 0 && !before(text, rawString.data()) && before(text, rawString.data() + rawString.size());
}

void Uri::replaceRange(unsigned int begin, unsigned int oldLength, const char* text, unsigned int length)
{
    if (text != nullptr && refersToOwnText(text, length)) {
        // Moving the tail may move or free the text itself.
        const String copy(text, length);
        replaceRange(begin, oldLength, copy.data(), length);
        return;
    }
    if (length > oldLength) {
        rawString.insert(rawString.begin() + begin + oldLength, length - oldLength, '\0');
    } else if (length < oldLength) {
        rawString.erase(rawString.begin() + begin + length, rawString.begin() + begin + oldLength);
    }
    if (text != nullptr && length != 0) {
        std::memcpy(rawString.data() + begin, text, length);
    }
}

} // namespace utils
} // namespace tov
