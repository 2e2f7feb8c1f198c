#include <tov/utils/Property.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Quaternion.h>
#include <tov/utils/StaticObject.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/Vector2.h>
#include <tov/utils/Vector3.h>
#include <tov/utils/details/PropertyHolder.h>

#include <ostream>

namespace tov {
namespace utils {

const unsigned char Property::accessors_Get;
const unsigned char Property::accessors_MutableGet;
const unsigned char Property::accessors_Set;

namespace {

// The setter's refusal repeats "getter": the text stands so.
const char* refusalText(int refusal)
{
    static const char* const texts[] = {"Invalid property name.", "Invalid getter pointer.", "Invalid getter pointer.",
                                        "Invalid owner type.", "Invalid value type."};
    return texts[refusal];
}

} // namespace

Property::Property() : holder(nullptr), typeManager(nullptr) {}

Property::Property(const Property& other)
    : key(other.key), ownerType(other.ownerType), valueType(other.valueType),
      holder(other.holder != nullptr ? other.holder->clone() : nullptr), typeManager(other.typeManager)
{
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the clone is taken before anything is released.
Property& Property::operator=(const Property& other)
{
    // The holder that this property had is released as well, so that assigning to a valid property
    // does not leak it; the clone comes first, for an assignment to itself.
    details::PropertyHolder* copy = other.holder != nullptr ? other.holder->clone() : nullptr;
    key = other.key;
    ownerType = other.ownerType;
    valueType = other.valueType;
    typeManager = other.typeManager;
    replaceHolder(copy);
    return *this;
}

Property::~Property()
{
    TOV_DELETE(holder);
}

bool Property::isValid() const
{
    return holder != nullptr;
}

bool Property::hasMutableGet() const
{
    assertValid();
    return holder != nullptr && (holder->getAccessors() & accessors_MutableGet) != 0;
}

const char* Property::getKey() const
{
    assertValid();
    return key.c_str();
}

const TypeManager& Property::getTypeManager() const
{
    assertValid();
    return *typeManager;
}

const Uuid& Property::getTypeId() const
{
    assertValid();
    return valueType;
}

const char* Property::getTypeName() const
{
    assertValid();
    return typeManager != nullptr ? typeManager->getTypeName(valueType) : "";
}

type::Type Property::getType() const
{
    assertValid();
    return typeManager != nullptr ? typeManager->getType(valueType) : type::null;
}

const Uuid& Property::getOwnerTypeId() const
{
    assertValid();
    return ownerType;
}

bool Property::isInt() const
{
    return getType() == type::integer;
}

bool Property::isReal() const
{
    return getType() == type::real;
}

bool Property::isBool() const
{
    return getType() == type::boolean;
}

bool Property::isString() const
{
    return getType() == type::string;
}

bool Property::isObject() const
{
    return getType() == type::object;
}

bool Property::isStaticObject() const
{
    // An invalid property has no manager to ask.
    return typeManager != nullptr && typeManager->isDerivedFrom(valueType, StaticObject::getClassTypeId());
}

bool Property::isDynamicObject() const
{
    return valueType == details::getClassTypeId<DynamicObject>();
}

bool Property::isVector2() const
{
    return valueType == details::getClassTypeId<Vector2<double>>();
}

bool Property::isVector3() const
{
    return valueType == details::getClassTypeId<Vector3<double>>();
}

bool Property::isQuaternion() const
{
    return valueType == details::getClassTypeId<Quaternion<double>>();
}

bool Property::isTypeCompatible(type::Type other) const
{
    switch (getType()) {
    case type::null:
        return true;
    case type::integer:
    case type::real:
        return other == type::integer || other == type::real;
    case type::string:
    case type::boolean:
    case type::array:
    case type::object:
        return other == getType();
    }
    return false;
}

bool Property::refuse(Refusal refusal, AbstractLogger* logger)
{
    TOV_LOG_ERROR(logger, error::invalidArgument, refusalText(static_cast<int>(refusal)));
    key.clear();
    ownerType.clear();
    valueType.clear();
    replaceHolder(nullptr);
    typeManager = nullptr;
    return false;
}

bool Property::bind(const char* newKey, const Uuid& ownerId, const Uuid& valueId, const TypeManager& manager,
                    AbstractLogger* logger)
{
    typeManager = &manager;
    key = newKey;
    ownerType = ownerId;
    valueType = valueId;
    if (!ownerType.isValid() || !manager.isTypeRegistered(ownerType)) {
        return refuse(Refusal::ownerType, logger);
    }
    if (!valueType.isValid() || !manager.isTypeRegistered(valueType)) {
        return refuse(Refusal::valueType, logger);
    }
    return true;
}

void Property::replaceHolder(details::PropertyHolder* newHolder)
{
    TOV_DELETE(holder);
    holder = newHolder;
}

void Property::assertValid() const
{
    TOV_ASSERT(holder != nullptr, "Invalid property.");
}

bool Property::isBoundTo(const Uuid& ownerId, const Uuid& valueId) const
{
    return holder != nullptr && ownerType == ownerId && valueType == valueId;
}

std::ostream& operator<<(std::ostream& stream, const Property& property)
{
    return stream << property.getTypeName() << "::" << property.getKey();
}

} // namespace utils
} // namespace tov
