#include <tov/utils/details/TypeMetadata.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Property.h>
#include <tov/utils/details/TypeId.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {
namespace details {

namespace {

type::Type classify(const Uuid& id)
{
    if (id == getClassTypeId<int>() || id == getClassTypeId<long long>()) {
        return type::integer;
    }
    if (id == getClassTypeId<float>() || id == getClassTypeId<double>()) {
        return type::real;
    }
    if (id == getClassTypeId<bool>()) {
        return type::boolean;
    }
    if (id == getClassTypeId<String>()) {
        return type::string;
    }
    return type::object;
}

// What a failed index look-up hands out when the assertion function returns.
const Property& invalidProperty()
{
    static const Property property;
    return property;
}

} // namespace

TypeMetadata::TypeMetadata(const char* name, const Uuid& id) : id(id), kind(classify(id)), name(name) {}

TypeMetadata::~TypeMetadata()
{
    for (Property* property : properties) {
        TOV_DELETE(property);
    }
}

const char* TypeMetadata::getName() const
{
    return name.c_str();
}

const Uuid& TypeMetadata::getTypeId() const
{
    return id;
}

type::Type TypeMetadata::getType() const
{
    return kind;
}

bool TypeMetadata::addBaseType(const TypeMetadata& base, AbstractLogger* logger)
{
    if (base.isDerivedFrom(*this)) {
        TOV_LOG_ERROR(logger, error::invalidArgument,
                      "The given type," << base.getName() << ", derives from the current type, " << getName() << ".");
        return false;
    }
    if (!isDerivedFrom(base)) {
        baseTypes.push_back(&base);
    }
    return true;
}

void TypeMetadata::removeBaseType(const TypeMetadata& base)
{
    const auto found = std::find(baseTypes.begin(), baseTypes.end(), &base);
    if (found != baseTypes.end()) {
        baseTypes.erase(found);
    }
}

bool TypeMetadata::isDerivedFrom(const TypeMetadata& other) const
{
    if (id == other.id) {
        return true;
    }
    for (const TypeMetadata* base : baseTypes) {
        if (base->isDerivedFrom(other)) {
            return true;
        }
    }
    return false;
}

unsigned int TypeMetadata::countBaseTypes() const
{
    return static_cast<unsigned int>(baseTypes.size());
}

const TypeMetadata* TypeMetadata::getBaseType(unsigned int index) const
{
    TOV_ASSERT(index < baseTypes.size(), "Invalid base type index");
    return index < baseTypes.size() ? baseTypes[index] : nullptr;
}

void TypeMetadata::addProperty(const Property& property)
{
    properties.push_back(TOV_NEW Property(property));
}

bool TypeMetadata::hasProperty(const char* key) const
{
    return getProperty(key) != nullptr;
}

bool TypeMetadata::hasProperty(const char* key, unsigned int length) const
{
    return getProperty(key, length) != nullptr;
}

const Property* TypeMetadata::getProperty(const char* key) const
{
    if (key == nullptr) {
        return nullptr;
    }
    return getProperty(key, static_cast<unsigned int>(std::strlen(key)));
}

const Property* TypeMetadata::getProperty(const char* key, unsigned int length) const
{
    if (key == nullptr && length != 0) {
        return nullptr;
    }
    // Only the given length is compared, so an empty key matches the first property of all. The C
    // library is not asked to compare no characters of a null key.
    for (const Property* property : properties) {
        if (length == 0 || std::strncmp(key, property->getKey(), length) == 0) {
            return property;
        }
    }
    for (const TypeMetadata* base : baseTypes) {
        if (const Property* property = base->getProperty(key, length)) {
            return property;
        }
    }
    return nullptr;
}

unsigned int TypeMetadata::countProperties() const
{
    unsigned int count = static_cast<unsigned int>(properties.size());
    for (const TypeMetadata* base : baseTypes) {
        count += base->countProperties();
    }
    return count;
}

const Property& TypeMetadata::getProperty(unsigned int index) const
{
    for (const TypeMetadata* base : baseTypes) {
        const unsigned int inBase = base->countProperties();
        if (index < inBase) {
            return base->getProperty(index);
        }
        index -= inBase;
    }
    TOV_ASSERT(index < properties.size(), "Invalid property index");
    return index < properties.size() ? *properties[index] : invalidProperty();
}

} // namespace details
} // namespace utils
} // namespace tov
