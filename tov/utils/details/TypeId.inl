#pragma once

#include <type_traits>

namespace tov {
namespace utils {
namespace details {

template <typename T>
const Uuid& getClassTypeId()
{
    return T::getClassTypeId();
}

template <typename T>
const Uuid& getObjectTypeId(const T& object)
{
    if constexpr (std::is_base_of<StaticObject, T>::value) {
        return object.getTypeId();
    } else {
        (void)object;
        return getClassTypeId<T>();
    }
}

} // namespace details
} // namespace utils
} // namespace tov
