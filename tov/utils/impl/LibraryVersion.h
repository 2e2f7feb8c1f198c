#pragma once
// The library's version as numbers, as saved forms carry it (the text form is getVersionTOV_UTILS()).

namespace tov {
namespace utils {
namespace impl {

constexpr unsigned int libraryVersionMajor = 0;
constexpr unsigned int libraryVersionMinor = 4;
constexpr unsigned int libraryVersionPatch = 0;

} // namespace impl
} // namespace utils
} // namespace tov
