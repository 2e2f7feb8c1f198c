#pragma once
// UriGrammarParser: reads the path or the query production of the URI grammar over a text and its size,
// and tells callbacks what it recognises. It takes percent escapes, which the setters of Uri refuse.
//   UriGrammarParser::Callbacks callbacks;  callbacks.onSegment = &recordSegment;  callbacks.userData = &state;
//   UriGrammarParser::Result result = UriGrammarParser(path, size, callbacks).parsePath();

namespace tov {
namespace utils {
namespace impl {

class UriGrammarParser {
public:
    enum Result {
        complete = 0,    // the whole text was read
        stopped = 1,     // a callback returned false
        syntaxError = 2, // the production ended before the text did
    };

    // An absent callback is skipped. A callback returning false stops the parse at once.
    struct Callbacks {
        void* userData = nullptr;
        // Each segment of a path that is not empty, escapes as they stand.
        bool (*onSegment)(void* userData, const char* segment, unsigned int length) = nullptr;
        // Each pair of a query; `value` is null when the pair has no key-value separator.
        bool (*onPair)(void* userData, const char* key, unsigned int keyLength, const char* value,
                       unsigned int valueLength) = nullptr;
        char pairSeparator = '&';
        char keyValueSeparator = '=';
    };

    // Reads NUL at and beyond `size`, never past it.
    UriGrammarParser(const char* text, unsigned int size, const Callbacks& callbacks);

    // "/" [segment-nz *("/" segment)], or segment-nz *("/" segment), or nothing.
    Result parsePath();
    // Pairs separated by the pair separator: a key, then optionally the key-value separator and a value.
    Result parseQuery();

private:
    char at(unsigned int index) const;
    // The length of the path character at `index`: 1, 3 for an escape, or 0 when there is none.
    unsigned int matchPathCharacter(unsigned int index) const;
    unsigned int matchQueryCharacter(unsigned int index) const;
    // Reads one segment, possibly empty, and reports it when it is not; returns its length.
    unsigned int readSegment();
    void readSegmentsAfterSlash();
    // Reads query characters other than the separators that are passed.
    unsigned int readQueryText(char excluded1, char excluded2);
    Result finish() const;

    const char* text;
    unsigned int size;
    const Callbacks& callbacks;
    unsigned int position = 0;
    bool stoppedByCallback = false;
};

} // namespace impl
} // namespace utils
} // namespace tov
