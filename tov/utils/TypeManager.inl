#pragma once

#include <tov/utils/Property.h>
#include <tov/utils/details/TypeId.h>
#include <tov/utils/details/TypeMetadata.h>

namespace tov {
namespace utils {

template <typename T>
bool TypeManager::registerType(AbstractLogger* logger)
{
    const bool registered =
        registerType(T::getClassTypeId(), T::getClassTypeName(), logger) && T::getClassMetadataSetter()(*this, logger);
    if (!registered) {
        unregisterType(T::getClassTypeId());
    }
    return registered;
}

template <typename Owner, typename Value>
bool TypeManager::registerProperty(const char* key, const Value& (Owner::*getter)() const,
                                   void (Owner::*setter)(const Value&), AbstractLogger* logger)
{
    const Uuid& ownerId = details::getClassTypeId<Owner>();
    details::TypeMetadata* owner = findMetadata(ownerId);
    if (owner == nullptr) {
        reportUnknownType(ownerId, logger);
        return false;
    }
    Property property;
    if (!property.setAccessors(key, getter, setter, *this, logger)) {
        return false;
    }
    owner->addProperty(property);
    return true;
}

} // namespace utils
} // namespace tov
