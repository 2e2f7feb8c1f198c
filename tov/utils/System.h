#pragma once
// The life cycle of the library: initialize before anything that needs Facilities, terminate at the end.
//   if (!tov::utils::initialize(&logger)) { /* fatal: see the logger */ }
//   ...; tov::utils::terminate(&logger);

#include <tov/utils/Export.h>
#include <tov/utils/Uuid.h>

namespace tov {
namespace utils {

class AbstractLogger;

// Creates Facilities and registers the library's types; true at once when already initialized.
[[nodiscard]] TOV_UTILS_API bool initialize(AbstractLogger* logger);
// Unregisters the types and destroys Facilities; always true, and does nothing when not initialized.
TOV_UTILS_API bool terminate(AbstractLogger* logger);
TOV_UTILS_API bool isInitialized();

// The scheme of the library's locations, "tov".
extern TOV_UTILS_API const char* const uriScheme;
// The library's own identity, for clients.
extern TOV_UTILS_API const Uuid uniqueId;
// The no-such-index result of index-returning functions.
extern TOV_UTILS_API const unsigned int invalidIndex;

} // namespace utils
} // namespace tov

// "0.4.0"; static text, not to be freed.
extern "C" TOV_UTILS_API const char* getVersionTOV_UTILS();

namespace tov_utils {
// A client that calls these binds itself at link time to a library of major version 0 and of 0.4.
TOV_UTILS_API bool check_0();
TOV_UTILS_API bool check_0_4();
} // namespace tov_utils
