// The statics that serve the HTTP side of Uri: request paths and queries, read without building a Uri.
#include <tov/utils/Uri.h>

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/String.h>
#include <tov/utils/impl/UriGrammarParser.h>

#include <cstdlib>
#include <cstring>

namespace tov {
namespace utils {

namespace {

struct FirstSegment {
    const char* path;
    unsigned int offset;
    unsigned int length;
};

bool recordFirstSegment(void* userData, const char* segment, unsigned int length)
{
    FirstSegment& first = *static_cast<FirstSegment*>(userData);
    first.offset = static_cast<unsigned int>(segment - first.path);
    first.length = length;
    return false;
}

// Whether strtol in base 10 reads all of a terminated text of `length` characters.
bool readsAsInteger(const char* text, unsigned int length, long& value)
{
    char* end = nullptr;
    value = std::strtol(text, &end, 10);
    return end == text + length;
}

bool readsAsReal(const char* text, unsigned int length, double& value)
{
    char* end = nullptr;
    value = std::strtod(text, &end);
    return end == text + length;
}

bool writePair(void* userData, const char* key, unsigned int keyLength, const char* value, unsigned int valueLength)
{
    TOV_ASSERT(userData != nullptr, "No given user data");
    if (userData == nullptr) {
        return false;
    }
    if (keyLength == 0) {
        return true;
    }
    // The builder's answers do not stop the query: every pair gets its chance. Only the value of a key that
    // was refused is held back: it would land on the object itself, which a DynamicObjectBuilder then
    // overwrites with the value before its endObject fails an assertion, on a key from any HTTP client.
    AbstractObjectBuilder& builder = *static_cast<AbstractObjectBuilder*>(userData);
    if (!builder.objectChild(key, keyLength)) {
        return true;
    }
    if (value == nullptr || valueLength == 0) {
        builder.boolean(true);
        return true;
    }
    // The number readers want a terminator, which a value inside a query lacks. Most values are short
    // enough for the stack; a longer one is copied through the memory service.
    char shortCopy[64];
    String longCopy;
    const char* text = shortCopy;
    if (valueLength < sizeof shortCopy) {
        std::memcpy(shortCopy, value, valueLength);
        shortCopy[valueLength] = '\0';
    } else {
        longCopy.assign(value, valueLength);
        text = longCopy.c_str();
    }
    long integer = 0;
    double real = 0.0;
    if (readsAsInteger(text, valueLength, integer)) {
        builder.integer(integer);
    } else if (readsAsReal(text, valueLength, real)) {
        builder.real(real);
    } else {
        builder.string(value, valueLength);
    }
    return true;
}

} // namespace

bool Uri::retrieveFirstPathSegment(const char* path, unsigned int size, unsigned int& offset, unsigned int& length)
{
    FirstSegment first = {path, 0, 0};
    impl::UriGrammarParser::Callbacks callbacks;
    callbacks.userData = &first;
    callbacks.onSegment = &recordFirstSegment;
    switch (impl::UriGrammarParser(path, size, callbacks).parsePath()) {
    case impl::UriGrammarParser::stopped:
        offset = first.offset;
        length = first.length;
        return true;
    case impl::UriGrammarParser::complete:
        offset = size;
        length = 0;
        return true;
    default:
        return false;
    }
}

bool Uri::parseQuery(const char* query, unsigned int size, AbstractObjectBuilder& builder)
{
    if (!builder.begin() || !builder.beginObject()) {
        return false;
    }
    impl::UriGrammarParser::Callbacks callbacks;
    callbacks.userData = &builder;
    callbacks.onPair = &writePair;
    const impl::UriGrammarParser::Result result = impl::UriGrammarParser(query, size, callbacks).parseQuery();
    // The object is closed whatever the result, so that the builder is left with a whole tree.
    const bool objectEnded = builder.endObject();
    const bool ended = builder.end();
    return result == impl::UriGrammarParser::complete && objectEnded && ended;
}

} // namespace utils
} // namespace tov
