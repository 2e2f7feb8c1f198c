#pragma once
// Rules on the texts that name dynamic properties, shared by DynamicObject and the builders that take
// names from outside, so that a name is refused before it can reach an assertion.
//   if (!impl::isValidChildKey(name, length)) { report(impl::findPathCharacter(name, length)); }

namespace tov {
namespace utils {
namespace impl {

// A single child name: not empty, and free of the path characters ".", "[" and "]" and of the zero
// byte, which would stand for the end of a path inside the trie.
bool isValidChildKey(const char* key, unsigned int length);

// The first of ".", "[" and "]" in the text, or 0 when there is none.
char findPathCharacter(const char* key, unsigned int length);

// A real truncated toward zero, saturated at the limits of long long (NaN gives 0), so that no value
// read from outside makes the conversion undefined.
long long truncateToInteger(double value);

} // namespace impl
} // namespace utils
} // namespace tov
