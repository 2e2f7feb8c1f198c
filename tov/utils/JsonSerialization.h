#pragma once
// JSON in and out of dynamic objects, and the walk of a DynamicObject into any AbstractObjectBuilder.
//   FileInputOutput out("world.json"); out.openForWriting(logger);
//   serializeDynamicObjectToJson(world, out, logger);                 // {"agents":[...]}
//   deserializeDynamicObjectFromJson(copy, requestBody, logger);      // any stream whose read ends with false

#include <tov/utils/Export.h>

namespace tov {
namespace utils {

class AbstractDataInputOutput;
class AbstractLogger;
class AbstractObjectBuilder;
class DynamicObject;

// begin, the whole object from its root, end. The first false stops the walk (without end).
TOV_UTILS_API bool serializeDynamicObject(const DynamicObject& object, AbstractObjectBuilder& builder);
[[nodiscard]] TOV_UTILS_API bool serializeDynamicObjectToJson(const DynamicObject& object,
                                                              AbstractDataInputOutput& stream, AbstractLogger* logger);
// Replays the JSON text read from `stream` as calls on `builder` (neither begin nor end). The stream
// must give false from read once its data is used up. Always true: failures show only as the
// builder's messages.
TOV_UTILS_API bool deserializeJson(AbstractObjectBuilder& builder, AbstractDataInputOutput& stream);
// Into the root of `object`, which is not cleared first.
[[nodiscard]] TOV_UTILS_API bool
deserializeDynamicObjectFromJson(DynamicObject& object, AbstractDataInputOutput& stream, AbstractLogger* logger);

} // namespace utils
} // namespace tov
