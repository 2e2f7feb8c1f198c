#pragma once
// type::Type: the kind of a dynamic property or value. The numbers are stored in trie nodes and saved
// forms, so they never change.
//   if (object.getType("speed") == tov::utils::type::real) { ... }
//   tov::utils::toString(tov::utils::type::array);   // "array"

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

namespace type {
// A fixed underlying type, so that any number read from a node or given by a caller is a value of it.
enum Type : int { null = 0, integer = 1, real = 2, string = 3, boolean = 4, array = 5, object = 6 };
} // namespace type

// The name of a type, or null for a number that is no type.
TOV_UTILS_API const char* toString(type::Type type);

} // namespace utils
} // namespace tov
