#pragma once
// Helpers shared by the sources of DynamicObject and its iterator: the texts of their assertions, the
// length of a terminated text, the path separators, the room of an array key, and the child key that a
// name takes below its parent.
//   char key[impl::arrayKeyCapacity];                      // holds "[99999]", the largest index's key
//   const impl::ChildKey child(name, length, parent != root);   // ".name", or "name" below the root

#include <tov/utils/String.h>

#include <climits>
#include <cstring>

namespace tov {
namespace utils {
namespace impl {

const char* const nullKeyMessage = "Null string given as a key";
const char* const invalidPropertyMessage = "Invalid property";
const char* const unknownTypeMessage = " is an unknown tov::utils::type";

// Arrays hold fewer elements than this (DynamicObject::getMaximumArraySize()).
const unsigned int maximumArraySize = 100000;

constexpr unsigned int countDecimalDigits(unsigned int number)
{
    return number < 10 ? 1 : 1 + countDecimalDigits(number / 10);
}

// The digits of the largest index, and the room of its key "[99999]": the buffers of array keys and of
// their digits are sized from these, and the assertion below keeps them in step with the maximum.
const unsigned int arrayIndexDigits = 5;
const unsigned int arrayKeyCapacity = arrayIndexDigits + 2;
static_assert(countDecimalDigits(maximumArraySize - 1) <= arrayIndexDigits,
              "the largest array index must fit the buffers of an array key: raise arrayIndexDigits");
// A path index is read digit by digit, saturated at the maximum: one more digit on the maximum must
// still fit in an unsigned int.
static_assert(maximumArraySize <= (UINT_MAX - 9) / 10, "a saturated path index must not wrap around");

inline unsigned int lengthOf(const char* text)
{
    return text != nullptr ? static_cast<unsigned int>(std::strlen(text)) : 0;
}

// The characters that begin a child's part of a path: "." before a name, "[" before an index.
inline bool isSeparator(signed char c)
{
    return c == '.' || c == '[';
}

// The key of a child in its parent's level: "." and the name (or the name alone, `withSeparator` false,
// below the root), on the stack for the usual short names.
class ChildKey {
public:
    ChildKey(const char* name, unsigned int length, bool withSeparator)
    {
        const unsigned int total = length + (withSeparator ? 1 : 0);
        text = total <= sizeof(shortText) ? shortText : (longText.resize(total), &longText[0]);
        if (withSeparator) {
            text[0] = '.';
        }
        std::memcpy(text + (withSeparator ? 1 : 0), name, length);
        size = total;
    }
    ChildKey(const ChildKey&) = delete;
    ChildKey& operator=(const ChildKey&) = delete;
    const char* data() const { return text; }
    unsigned int length() const { return size; }

private:
    char shortText[64];
    String longText;
    char* text;
    unsigned int size;
};

// The split node of a level, searched as the character 0 from `handle`, the first node of the level:
// along `less` links past the path characters, and `greater` ones past the bytes of 0x80 and above, which
// sort below 0. 0 when the level has none or a link leads out of the blocks. `getNode` maps a handle to
// its node, or to null.
template <typename GetNode>
unsigned int findLevelSplitNode(unsigned int handle, GetNode getNode)
{
    while (handle != 0) {
        const auto* candidate = getNode(handle);
        if (candidate == nullptr) {
            return 0;
        }
        if (candidate->trie.splitChar == 0) {
            return handle;
        }
        handle = candidate->trie.splitChar > 0 ? candidate->trie.less : candidate->trie.greater;
    }
    return 0;
}

} // namespace impl
} // namespace utils
} // namespace tov
