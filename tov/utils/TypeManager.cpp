#include <tov/utils/TypeManager.h>

#include <tov/utils/AssertingLogger.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Quaternion.h>
#include <tov/utils/StaticObject.h>
#include <tov/utils/Vector2.h>
#include <tov/utils/Vector3.h>

#include <cstring>

namespace tov {
namespace utils {

using details::TypeMetadata;

namespace {

// What the getters hand out when an assertion function returns after an unknown id or name.
const TypeMetadata& unknownMetadata()
{
    static const TypeMetadata metadata("", Uuid());
    return metadata;
}

const Uuid& unknownId()
{
    static const Uuid id;
    return id;
}

const Property& missingProperty()
{
    static const Property property;
    return property;
}

// The key of a message, which may be null or not terminated within its length.
String printableKey(const char* key, unsigned int length)
{
    return key != nullptr ? String(key, length) : String();
}

} // namespace

TypeManager::StaticObjectCreator::~StaticObjectCreator() = default;

StaticObject* TypeManager::StaticObjectCreator::operator()(AbstractLogger* /*logger*/) const
{
    return nullptr;
}

TypeManager::TypeManager() = default;

TypeManager::~TypeManager()
{
    clearTypes();
}

bool TypeManager::registerType(const Uuid& id, const char* name, AbstractLogger* logger)
{
    const auto byId = typesById.find(id);
    if (byId != typesById.end() && std::strcmp(byId->second->getName(), name) != 0) {
        TOV_LOG_ERROR(logger, error::invalidArgument,
                      "While trying to register a type with name " << name << ", another type named "
                                                                   << byId->second->getName()
                                                                   << ",  was found with the same id, " << id << ".");
        return false;
    }
    const auto byName = typesByName.find(name);
    if (byName != typesByName.end()) {
        if (byName->second->getTypeId() != id) {
            TOV_LOG_ERROR(logger, error::invalidArgument,
                          "While trying to register a type with id {"
                              << id << "}, another type with id {" << byName->second->getTypeId()
                              << "}, was found with the same name '" << name << "'.");
            return false;
        }
        TOV_LOG_WARNING(logger, "Trying to register an already registered type: '" << name << "' {" << id << "}");
        return true;
    }
    TypeMetadata* metadata = TOV_NEW TypeMetadata(name, id);
    typesById[id] = metadata;
    typesByName[metadata->getName()] = metadata;
    return true;
}

void TypeManager::unregisterType(const Uuid& id)
{
    if (creators.isRegistered(id)) {
        // Registered, so the removal cannot fail; were it to, `strict` would assert.
        AssertingLogger strict;
        static_cast<void>(creators.unregisterCreator(id, &strict));
    }
    const auto found = typesById.find(id);
    if (found == typesById.end()) {
        return;
    }
    TypeMetadata* metadata = found->second;
    for (auto& entry : typesById) {
        entry.second->removeBaseType(*metadata);
    }
    typesByName.erase(metadata->getName());
    TOV_DELETE(metadata);
    typesById.erase(found);
}

void TypeManager::clearTypes()
{
    for (auto& entry : typesById) {
        TOV_DELETE(entry.second);
    }
    typesById.clear();
    typesByName.clear();
}

bool TypeManager::registerBaseTypes(AbstractLogger* logger)
{
    using details::getClassTypeId;
    using Vector3r = Vector3<double>;
    using Vector2r = Vector2<double>;
    using Quaternionr = Quaternion<double>;
    // Each step runs only while the earlier ones succeeded.
    const bool registered = registerType(getClassTypeId<int>(), "int", logger) &&
                            registerType(getClassTypeId<long long>(), "int64", logger) &&
                            registerType(getClassTypeId<double>(), "double", logger) &&
                            registerType(getClassTypeId<float>(), "float", logger) &&
                            registerType(getClassTypeId<bool>(), "bool", logger) &&
                            registerType(getClassTypeId<String>(), "tov::utils::String", logger) &&
                            registerType(getClassTypeId<Vector3r>(), "tov::utils::Vector3r", logger) &&
                            registerProperty("x", &Vector3r::getX, &Vector3r::setX, logger) &&
                            registerProperty("y", &Vector3r::getY, &Vector3r::setY, logger) &&
                            registerProperty("z", &Vector3r::getZ, &Vector3r::setZ, logger) &&
                            registerType(getClassTypeId<Vector2r>(), "tov::utils::Vector2r", logger) &&
                            registerProperty("x", &Vector2r::getX, &Vector2r::setX, logger) &&
                            registerProperty("y", &Vector2r::getY, &Vector2r::setY, logger) &&
                            registerType(getClassTypeId<Quaternionr>(), "tov::utils::Quaternionr", logger) &&
                            registerProperty("x", &Quaternionr::getX, &Quaternionr::setX, logger) &&
                            registerProperty("y", &Quaternionr::getY, &Quaternionr::setY, logger) &&
                            registerProperty("z", &Quaternionr::getZ, &Quaternionr::setZ, logger) &&
                            registerProperty("w", &Quaternionr::getW, &Quaternionr::setW, logger) &&
                            registerType(getClassTypeId<DynamicObject>(), "tov::utils::DynamicObject", logger) &&
                            registerType<StaticObject>(logger);
    if (!registered) {
        unregisterBaseTypes();
    }
    return registered;
}

void TypeManager::unregisterBaseTypes()
{
    using details::getClassTypeId;
    // QUIRK(dynamic-object-stays-registered): only clearTypes removes DynamicObject; kept as the registry
    // has always answered, DynamicObject registered after terminate.
    unregisterType(getClassTypeId<int>());
    unregisterType(getClassTypeId<long long>());
    unregisterType(getClassTypeId<double>());
    unregisterType(getClassTypeId<float>());
    unregisterType(getClassTypeId<bool>());
    unregisterType(getClassTypeId<String>());
    unregisterType(getClassTypeId<Vector3<double>>());
    unregisterType(getClassTypeId<Vector2<double>>());
    unregisterType(getClassTypeId<Quaternion<double>>());
    unregisterType(StaticObject::getClassTypeId());
}

bool TypeManager::isTypeRegistered(const Uuid& id) const
{
    return typesById.find(id) != typesById.end();
}

bool TypeManager::isTypeRegistered(const char* name) const
{
    return name != nullptr && typesByName.find(name) != typesByName.end();
}

const char* TypeManager::getTypeName(const Uuid& id) const
{
    return getMetadata(id).getName();
}

type::Type TypeManager::getType(const Uuid& id) const
{
    return getMetadata(id).getType();
}

const Uuid& TypeManager::getTypeId(const char* name) const
{
    const auto found = typesByName.find(name);
    TOV_ASSERT(found != typesByName.end(), "No type having the name " << name << " is registered.");
    return found != typesByName.end() ? found->second->getTypeId() : unknownId();
}

bool TypeManager::addBaseType(const Uuid& derived, const Uuid& base, AbstractLogger* logger)
{
    TypeMetadata* derivedMetadata = findMetadata(derived);
    if (derivedMetadata == nullptr) {
        reportUnknownType(derived, logger);
        return false;
    }
    const TypeMetadata* baseMetadata = findMetadata(base);
    if (baseMetadata == nullptr) {
        reportUnknownType(base, logger);
        return false;
    }
    return derivedMetadata->addBaseType(*baseMetadata, logger);
}

bool TypeManager::isDerivedFrom(const Uuid& derived, const Uuid& base) const
{
    const TypeMetadata* derivedMetadata = findMetadata(derived);
    const TypeMetadata* baseMetadata = findMetadata(base);
    if (derivedMetadata == nullptr || baseMetadata == nullptr) {
        return false;
    }
    return derived == base || derivedMetadata->isDerivedFrom(*baseMetadata);
}

bool TypeManager::isPropertyRegistered(const Uuid& id, const char* key) const
{
    return getPropertyPtr(id, key) != nullptr;
}

bool TypeManager::isPropertyRegistered(const Uuid& id, const char* key, unsigned int length) const
{
    return getPropertyPtr(id, key, length) != nullptr;
}

const Property& TypeManager::getProperty(const Uuid& id, const char* key) const
{
    const Property* property = getPropertyPtr(id, key);
    TOV_ASSERT(property != nullptr,
               "The type " << id << " have no registered property named " << (key != nullptr ? key : ""));
    return property != nullptr ? *property : missingProperty();
}

const Property& TypeManager::getProperty(const Uuid& id, const char* key, unsigned int length) const
{
    const Property* property = getPropertyPtr(id, key, length);
    TOV_ASSERT(property != nullptr,
               "The type " << id << " have no registered property named " << printableKey(key, length));
    return property != nullptr ? *property : missingProperty();
}

unsigned int TypeManager::countProperties(const Uuid& id) const
{
    return getMetadata(id).countProperties();
}

const Property& TypeManager::getProperty(const Uuid& id, unsigned int index) const
{
    return getMetadata(id).getProperty(index);
}

bool TypeManager::isStaticObject(const Uuid& id) const
{
    return isTypeRegistered(id) && isDerivedFrom(id, StaticObject::getClassTypeId());
}

StaticObject* TypeManager::createStaticObject(const Uuid& id, AbstractLogger* logger) const
{
    if (!isTypeRegistered(id)) {
        // getTypeName fails its own assertion here first; the message follows only when that returns.
        TOV_LOG_ERROR(logger, error::invalidArgument, "No registered creator for " << getTypeName(id) << ".");
        return nullptr;
    }
    if (!creators.isRegistered(id)) {
        reportUnknownType(id, logger);
        return nullptr;
    }
    return creators.getCreator(id)(logger);
}

void TypeManager::destroyStaticObject(StaticObject* object) const
{
    TOV_DELETE(object);
}

TypeManager::CreatorFactory& TypeManager::getCreatorFactory()
{
    return creators;
}

const Property* TypeManager::getPropertyPtr(const Uuid& id, const char* key) const
{
    TOV_ASSERT(key != nullptr, "Invalid key");
    return getMetadata(id).getProperty(key);
}

const Property* TypeManager::getPropertyPtr(const Uuid& id, const char* key, unsigned int length) const
{
    TOV_ASSERT(key != nullptr, "Invalid key");
    return getMetadata(id).getProperty(key, length);
}

const TypeMetadata& TypeManager::getMetadata(const Uuid& id) const
{
    const TypeMetadata* metadata = findMetadata(id);
    TOV_ASSERT(metadata != nullptr, "No type having the id " << id << " is registered.");
    return metadata != nullptr ? *metadata : unknownMetadata();
}

TypeMetadata* TypeManager::findMetadata(const Uuid& id) const
{
    const auto found = typesById.find(id);
    return found != typesById.end() ? found->second : nullptr;
}

void TypeManager::reportUnknownType(const Uuid& id, AbstractLogger* logger) const
{
    TOV_LOG_ERROR(logger, error::invalidArgument, "No type having the id " << id << " is registered.");
}

} // namespace utils
} // namespace tov
