#include <tov/utils/DynamicObject.h>

#include <tov/utils/Property.h>
#include <tov/utils/TypeManager.h>

namespace tov {
namespace utils {

bool DynamicObject::isTypeCompatible(unsigned int property, const Uuid& typeId, const TypeManager& typeManager) const
{
    if (property == 0 || !typeManager.isTypeRegistered(typeId)) {
        return false;
    }
    const type::Type kind = typeManager.getType(typeId);
    if (kind != type::object) {
        return isTypeCompatible(property, kind);
    }
    // A property that the object lacks is no conflict: only those present must fit.
    const unsigned int count = typeManager.countProperties(typeId);
    for (unsigned int i = 0; i < count; ++i) {
        const Property& member = typeManager.getProperty(typeId, i);
        const unsigned int child = getChild(property, member.getKey());
        if (child != 0 && !isTypeCompatible(child, member.getTypeId(), typeManager)) {
            return false;
        }
    }
    return true;
}

bool DynamicObject::isTypeCompatible(const char* key, const Uuid& typeId, const TypeManager& typeManager) const
{
    return isTypeCompatible(getProperty(key), typeId, typeManager);
}

bool DynamicObject::isTypeCompatible(const char* key, unsigned int length, const Uuid& typeId,
                                     const TypeManager& typeManager) const
{
    return isTypeCompatible(getProperty(key, length), typeId, typeManager);
}

} // namespace utils
} // namespace tov
