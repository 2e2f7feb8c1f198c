#pragma once
// The texts of Uri's broken contracts, shared by the files that make up Uri.

namespace tov {
namespace utils {
namespace impl {

inline constexpr char uriNullStringMessage[] = "NULL string given";
inline constexpr char uriNullSchemeMessage[] = "NULL scheme given";
inline constexpr char uriNullPathMessage[] = "NULL path given";
inline constexpr char uriNullExtensionMessage[] = "NULL extension given";
inline constexpr char uriNullQueryMessage[] = "NULL query given";
inline constexpr char uriNullFragmentMessage[] = "NULL fragment given";

} // namespace impl
} // namespace utils
} // namespace tov
