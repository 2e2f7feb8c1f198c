#pragma once
// Saved forms of a random stream (its seed and count) and of the random manager (its seed), in the
// text format of protobuf. Buffers handed out are the caller's, to release with TOV_DELETE_ARRAY.
//   unsigned int size = 0;
//   char* saved = tov::utils::serializeRandom(size, dice, &logger);
//   tov::utils::deserializeRandom(saved, size, dice, &logger);   TOV_DELETE_ARRAY(saved);

#include <tov/utils/Export.h>
#include <tov/utils/Random.h>
#include <tov/utils/RandomManager.h>

namespace tov {
namespace utils {

class AbstractLogger;

// The text, without terminator, and its length in `size`; null after logging when printing fails.
[[nodiscard]] TOV_UTILS_API char* serializeRandomManager(unsigned int& size, const RandomManager& manager,
                                                         AbstractLogger* logger);
// False after logging, with `manager` unchanged, for text that isn't a manager of this version.
[[nodiscard]] TOV_UTILS_API bool deserializeRandomManager(const char* buffer, unsigned int size, RandomManager& manager,
                                                          AbstractLogger* logger);

[[nodiscard]] TOV_UTILS_API char* serializeRandom(unsigned int& size, const Random& random, AbstractLogger* logger);
// Re-seeds and steps a new stream to the saved count, then assigns it; false after logging, with
// `random` unchanged, for text that isn't a stream of this version.
[[nodiscard]] TOV_UTILS_API bool deserializeRandom(const char* buffer, unsigned int size, Random& random,
                                                   AbstractLogger* logger);

} // namespace utils
} // namespace tov
