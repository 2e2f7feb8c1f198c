#pragma once
// The allocation functions handed to yajl, so that the generator's and the parser's memory shows in
// the memory service's accounts like every other block of the library.

#include <yajl/yajl_common.h>

namespace tov {
namespace utils {
namespace impl {

yajl_alloc_funcs makeYajlAllocationFunctions();

} // namespace impl
} // namespace utils
} // namespace tov
