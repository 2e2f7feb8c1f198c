#include <tov/utils/details/PutInspectableObjectHelper.h>

#include <tov/utils/DynamicObject.h>

namespace tov {
namespace utils {
namespace details {

template <>
bool putInspectableObjectHelper<int>(DynamicObject& object, unsigned int property, const int& value, const TypeManager&,
                                     AbstractLogger*)
{
    object.setInt(property, static_cast<long long>(value));
    return true;
}

template <>
bool putInspectableObjectHelper<long long>(DynamicObject& object, unsigned int property, const long long& value,
                                           const TypeManager&, AbstractLogger*)
{
    object.setInt(property, value);
    return true;
}

template <>
bool putInspectableObjectHelper<bool>(DynamicObject& object, unsigned int property, const bool& value,
                                      const TypeManager&, AbstractLogger*)
{
    object.setBool(property, value);
    return true;
}

template <>
bool putInspectableObjectHelper<float>(DynamicObject& object, unsigned int property, const float& value,
                                       const TypeManager&, AbstractLogger*)
{
    object.setReal(property, static_cast<double>(value));
    return true;
}

template <>
bool putInspectableObjectHelper<double>(DynamicObject& object, unsigned int property, const double& value,
                                        const TypeManager&, AbstractLogger*)
{
    object.setReal(property, value);
    return true;
}

template <>
bool putInspectableObjectHelper<String>(DynamicObject& object, unsigned int property, const String& value,
                                        const TypeManager&, AbstractLogger*)
{
    object.setString(property, value.c_str(), static_cast<unsigned int>(value.size()));
    return true;
}

template <>
bool putInspectableObjectHelper<DynamicObject>(DynamicObject& object, unsigned int property, const DynamicObject& value,
                                               const TypeManager&, AbstractLogger*)
{
    object.put(property, value);
    return true;
}

} // namespace details
} // namespace utils
} // namespace tov
