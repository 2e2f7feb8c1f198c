#pragma once
// String: the library's text type, a standard string whose buffer comes from the memory service.
//   tov::utils::String name("speed");
//   tov::utils::OStringStream out; out << name << 3;   // out.str() is a String too

#include <tov/allocator/StdAllocator.h>

#include <sstream>
#include <string>

namespace tov {
namespace utils {

using String = std::basic_string<char, std::char_traits<char>, allocator::StdAllocator<char>>;
using OStringStream = std::basic_ostringstream<char, std::char_traits<char>, allocator::StdAllocator<char>>;
using IStringStream = std::basic_istringstream<char, std::char_traits<char>, allocator::StdAllocator<char>>;

} // namespace utils
} // namespace tov
