#pragma once
// PathCursor: walks the text of a property path ("a.b[3].c") one part at a time, for DynamicObject's
// addProperty, which makes each part as it goes. Private to the library.
//   details::PathCursor cursor("a.b[3]", 6);
//   cursor.next(true);    // name: "a"        cursor.next(false);   // name: ".b"
//   cursor.next(false);   // index: 3         cursor.next(false);   // finished, the rest is "]"

namespace tov {
namespace utils {
namespace details {

class PathCursor {
public:
    enum Step {
        name,    // a name ends: getPart/getPartLength, separator included unless it is the first part
        index,   // "[digits]" ends: getIndex, saturated at the largest array size
        refused, // the text is no path: a misplaced separator, a character in brackets, a zero byte
        finished // the text is read; getRest/getRestLength hold what follows the last part
    };

    PathCursor(const char* path, unsigned int length);

    // The next part. `atRoot` tells whether the property reached so far is the root, where a first name
    // of one character ends at ".": elsewhere the position of a part's first character is taken for
    // that of its separator.
    Step next(bool atRoot);

    // The same cursor on another text that begins with the text read so far.
    void moveTo(const char* otherPath, unsigned int otherLength);
    // How much of the text has been read.
    unsigned int getPosition() const;
    const char* getPath() const;
    unsigned int getLength() const;

    const char* getPart() const;
    unsigned int getPartLength() const;
    unsigned int getIndex() const;
    // The text from the end of the last part, its separator included: the child left to add.
    const char* getRest() const;
    unsigned int getRestLength() const;

private:
    Step endName(unsigned int end);

    const char* path;
    unsigned int length;
    unsigned int position;
    // Where the part being read begins (its separator, past the first part).
    unsigned int partStart;
    unsigned int part;
    unsigned int partLength;
    unsigned int partIndex;
    bool insideBrackets;
};

} // namespace details
} // namespace utils
} // namespace tov
