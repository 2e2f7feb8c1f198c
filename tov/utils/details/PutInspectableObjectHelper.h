#pragma once
// putInspectableObjectHelper: writes a typed value into a property of a dynamic object, as the property
// kind that the value's type maps to (int and long long as integers, float and double as reals ...).
//   details::putInspectableObjectHelper(object, object.addProperty("speed"), 2.5f, typeManager, logger);
//   object.getReal("speed");   // 2.5

#include <tov/utils/String.h>

namespace tov {
namespace utils {

class AbstractLogger;
class DynamicObject;
class TypeManager;

namespace details {

// Always true. The type manager and the logger serve values with properties of their own; the scalar
// types and DynamicObject below need neither.
template <typename T>
[[nodiscard]] bool putInspectableObjectHelper(DynamicObject& object, unsigned int property, const T& value,
                                              const TypeManager& typeManager, AbstractLogger* logger);

template <>
[[nodiscard]] bool putInspectableObjectHelper<int>(DynamicObject& object, unsigned int property, const int& value,
                                                   const TypeManager& typeManager, AbstractLogger* logger);
template <>
[[nodiscard]] bool putInspectableObjectHelper<long long>(DynamicObject& object, unsigned int property,
                                                         const long long& value, const TypeManager& typeManager,
                                                         AbstractLogger* logger);
template <>
[[nodiscard]] bool putInspectableObjectHelper<bool>(DynamicObject& object, unsigned int property, const bool& value,
                                                    const TypeManager& typeManager, AbstractLogger* logger);
template <>
[[nodiscard]] bool putInspectableObjectHelper<float>(DynamicObject& object, unsigned int property, const float& value,
                                                     const TypeManager& typeManager, AbstractLogger* logger);
template <>
[[nodiscard]] bool putInspectableObjectHelper<double>(DynamicObject& object, unsigned int property, const double& value,
                                                      const TypeManager& typeManager, AbstractLogger* logger);
template <>
[[nodiscard]] bool putInspectableObjectHelper<String>(DynamicObject& object, unsigned int property, const String& value,
                                                      const TypeManager& typeManager, AbstractLogger* logger);
// Copies `value` as a subtree, merged into what the property holds.
template <>
[[nodiscard]] bool putInspectableObjectHelper<DynamicObject>(DynamicObject& object, unsigned int property,
                                                             const DynamicObject& value, const TypeManager& typeManager,
                                                             AbstractLogger* logger);

} // namespace details
} // namespace utils
} // namespace tov
