#pragma once
// The type ids by which the type manager knows a C++ type: a class of the StaticObject pattern gives its
// own, the base types (int, double, String, Vector3<double> ...) a fixed one kept here.
//   const tov::utils::Uuid& real = tov::utils::details::getClassTypeId<double>();
//   tov::utils::details::getObjectTypeId(agent);   // the most derived class of a StaticObject

#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/Uuid.h>

namespace tov {
namespace utils {

class DynamicObject;
class StaticObject;
template <typename T>
class Quaternion;
template <typename T>
class Vector2;
template <typename T>
class Vector3;

namespace details {

// A class of the StaticObject pattern answers through its static getClassTypeId; the types that cannot
// are specialised below.
template <typename T>
const Uuid& getClassTypeId();

template <>
TOV_UTILS_API const Uuid& getClassTypeId<int>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<long long>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<double>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<float>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<bool>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<String>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<Vector3<double>>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<Vector2<double>>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<Quaternion<double>>();
template <>
TOV_UTILS_API const Uuid& getClassTypeId<DynamicObject>();

// The id of the object's class; for a StaticObject, that of its most derived class.
template <typename T>
const Uuid& getObjectTypeId(const T& object);

} // namespace details
} // namespace utils
} // namespace tov

#include <tov/utils/details/TypeId.inl>
