#include <tov/utils/impl/UriGrammarParser.h>

#include <tov/utils/impl/UriCharacters.h>

#include <cctype>

namespace tov {
namespace utils {
namespace impl {

UriGrammarParser::UriGrammarParser(const char* text, unsigned int size, const Callbacks& callbacks)
    : text(text), size(size), callbacks(callbacks)
{
}

char UriGrammarParser::at(unsigned int index) const
{
    return index < size ? text[index] : '\0';
}

unsigned int UriGrammarParser::matchPathCharacter(unsigned int index) const
{
    const unsigned char c = static_cast<unsigned char>(at(index));
    if (isUriUnreserved(c) || isUriSubDelimiter(c) || c == ':' || c == '@') {
        return 1;
    }
    // at() gives NUL past the end, which is no hexadecimal digit, so an escape cut short is refused here.
    if (c == '%' && std::isxdigit(static_cast<unsigned char>(at(index + 1))) != 0 &&
        std::isxdigit(static_cast<unsigned char>(at(index + 2))) != 0) {
        return 3;
    }
    return 0;
}

unsigned int UriGrammarParser::matchQueryCharacter(unsigned int index) const
{
    const char c = at(index);
    return c == '/' || c == '?' ? 1 : matchPathCharacter(index);
}

unsigned int UriGrammarParser::readSegment()
{
    const unsigned int begin = position;
    while (const unsigned int length = matchPathCharacter(position)) {
        position += length;
    }
    const unsigned int length = position - begin;
    if (length > 0 && callbacks.onSegment != nullptr &&
        !callbacks.onSegment(callbacks.userData, text + begin, length)) {
        stoppedByCallback = true;
    }
    return length;
}

void UriGrammarParser::readSegmentsAfterSlash()
{
    while (!stoppedByCallback && at(position) == '/') {
        ++position;
        readSegment();
    }
}

UriGrammarParser::Result UriGrammarParser::parsePath()
{
    position = 0;
    stoppedByCallback = false;
    if (at(0) == '/') {
        ++position;
    }
    // Behind a leading slash the first segment is optional but, when present, not empty: that is what
    // makes "//x" malformed while "/" alone is a path.
    if (readSegment() > 0) {
        readSegmentsAfterSlash();
    }
    return finish();
}

unsigned int UriGrammarParser::readQueryText(char excluded1, char excluded2)
{
    const unsigned int begin = position;
    for (;;) {
        const char c = at(position);
        const unsigned int length = c == excluded1 || c == excluded2 ? 0 : matchQueryCharacter(position);
        if (length == 0) {
            return position - begin;
        }
        position += length;
    }
}

UriGrammarParser::Result UriGrammarParser::parseQuery()
{
    position = 0;
    stoppedByCallback = false;
    for (;;) {
        const char* key = text + position;
        const unsigned int keyLength = readQueryText(callbacks.pairSeparator, callbacks.keyValueSeparator);
        const char* value = nullptr;
        unsigned int valueLength = 0;
        if (at(position) == callbacks.keyValueSeparator) {
            ++position;
            value = text + position;
            // A value may hold the key-value separator.
            valueLength = readQueryText(callbacks.pairSeparator, callbacks.pairSeparator);
        }
        if (callbacks.onPair != nullptr && !callbacks.onPair(callbacks.userData, key, keyLength, value, valueLength)) {
            stoppedByCallback = true;
            break;
        }
        if (at(position) != callbacks.pairSeparator) {
            break;
        }
        ++position;
    }
    return finish();
}

UriGrammarParser::Result UriGrammarParser::finish() const
{
    if (stoppedByCallback) {
        return stopped;
    }
    return position < size ? syntaxError : complete;
}

} // namespace impl
} // namespace utils
} // namespace tov
