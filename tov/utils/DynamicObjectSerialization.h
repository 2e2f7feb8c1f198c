#pragma once
// The saved form of a dynamic object: protobuf text with a version header, of which a reader checks the
// major number. Buffers handed out are made by tracked array new: release them with TOV_DELETE_ARRAY.
//   unsigned int size = 0;
//   char* saved = tov::utils::serializeDynamicObject(size, world, logger);   // "version { ... } root { ... }"
//   tov::utils::deserializeDynamicObject(saved, size, copy, logger); TOV_DELETE_ARRAY(saved);

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractDataInputOutput;
class AbstractLogger;
class DynamicObject;

[[nodiscard]] TOV_UTILS_API bool
serializeDynamicObjectToProtobuf(const DynamicObject& object, AbstractDataInputOutput& stream, AbstractLogger* logger);
// The saved text without a terminating zero, and its length in `size`; null on failure, with `size`
// left alone.
[[nodiscard]] TOV_UTILS_API char* serializeDynamicObject(unsigned int& size, const DynamicObject& object,
                                                         AbstractLogger* logger);
// Reads a saved text into `object` (not cleared first). A text without a root changes nothing; a
// failed replay leaves what was built so far.
[[nodiscard]] TOV_UTILS_API bool deserializeDynamicObject(const char* buffer, unsigned int size, DynamicObject& object,
                                                          AbstractLogger* logger);

} // namespace utils
} // namespace tov
