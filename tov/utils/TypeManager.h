#pragma once
// TypeManager: the run-time registry of types, each known by a Uuid and a name, with its base types, its
// properties and, for StaticObject classes, a creator that makes instances by type id.
//   typeManager.registerType<Forager>(logger);                  // name, id and metadata of the class
//   StaticObject* agent = typeManager.createStaticObject(Forager::getClassTypeId(), logger);

#include <tov/utils/Containers.h>
#include <tov/utils/CreatorAbstractFactory.h>
#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/Uuid.h>

namespace tov {
namespace utils {

class AbstractLogger;
class Property;
class StaticObject;

namespace details {
class TypeMetadata;
}

class TOV_UTILS_API TypeManager {
public:
    // The base of the creators that a host registers under the type id of its class.
    class TOV_UTILS_API StaticObjectCreator {
    public:
        virtual ~StaticObjectCreator();
        // Creates nothing: what the factory answers for an id with no creator.
        virtual StaticObject* operator()(AbstractLogger* logger) const;
    };
    using CreatorFactory = CreatorAbstractFactory<Uuid, StaticObjectCreator>;

    TypeManager();
    ~TypeManager();
    // The manager owns its metadata and creators: a copy would release them twice.
    TypeManager(const TypeManager&) = delete;
    TypeManager& operator=(const TypeManager&) = delete;

    // A repeated registration under the same id and name is no failure (a warning); the id or the name
    // taken by another type is.
    [[nodiscard]] bool registerType(const Uuid& id, const char* name, AbstractLogger* logger);
    // Registers a class of the StaticObject pattern and states its metadata; on failure the class's id
    // is unregistered again.
    template <typename T>
    [[nodiscard]] bool registerType(AbstractLogger* logger);
    // Also drops the creator under the id, and the type from the bases of every other type.
    void unregisterType(const Uuid& id);
    // Destroys every type; the creators stay.
    void clearTypes();

    // int, int64, double, float, bool, String, Vector3r, Vector2r, Quaternionr, DynamicObject and
    // StaticObject, in this order. A failure unregisters them again and gives false.
    [[nodiscard]] bool registerBaseTypes(AbstractLogger* logger);
    // Leaves DynamicObject registered: only clearTypes removes it.
    void unregisterBaseTypes();

    bool isTypeRegistered(const Uuid& id) const;
    bool isTypeRegistered(const char* name) const;
    // An unknown id or name breaks the contract (an assertion).
    const char* getTypeName(const Uuid& id) const;
    type::Type getType(const Uuid& id) const;
    const Uuid& getTypeId(const char* name) const;

    // False, with a message, when either type is unknown or when `base` derives from `derived`.
    [[nodiscard]] bool addBaseType(const Uuid& derived, const Uuid& base, AbstractLogger* logger);
    // A registered type derives from itself; an unknown one from nothing.
    bool isDerivedFrom(const Uuid& derived, const Uuid& base) const;

    // Adds a property to the registered type `Owner`, read by `getter` and written by `setter`. The key
    // is not checked against the type's other properties.
    template <typename Owner, typename Value>
    [[nodiscard]] bool registerProperty(const char* key, const Value& (Owner::*getter)() const,
                                        void (Owner::*setter)(const Value&), AbstractLogger* logger);
    // By name, the type's own properties come before those of its bases, and a key matches the first
    // property whose name starts with it. A missing property breaks the contract of getProperty.
    bool isPropertyRegistered(const Uuid& id, const char* key) const;
    bool isPropertyRegistered(const Uuid& id, const char* key, unsigned int length) const;
    const Property& getProperty(const Uuid& id, const char* key) const;
    const Property& getProperty(const Uuid& id, const char* key, unsigned int length) const;
    // The type's properties and those of its bases; a base reached twice counts twice.
    unsigned int countProperties(const Uuid& id) const;
    // By index, the properties of the bases come first, in the order of the bases. Pass 0 as 0u.
    const Property& getProperty(const Uuid& id, unsigned int index) const;

    // Registered and derived from StaticObject in the metadata.
    bool isStaticObject(const Uuid& id) const;
    // Null, with a message, when no creator is registered under the id. The result is the caller's, to
    // be released with destroyStaticObject.
    [[nodiscard]] StaticObject* createStaticObject(const Uuid& id, AbstractLogger* logger) const;
    void destroyStaticObject(StaticObject* object) const;
    // Where a host registers the creators of its classes:
    //   typeManager.getCreatorFactory().registerCreator<ForagerCreator>(Forager::getClassTypeId(), logger);
    CreatorFactory& getCreatorFactory();

private:
    const Property* getPropertyPtr(const Uuid& id, const char* key) const;
    const Property* getPropertyPtr(const Uuid& id, const char* key, unsigned int length) const;
    const details::TypeMetadata& getMetadata(const Uuid& id) const;
    // Null for an unknown id, without a message.
    details::TypeMetadata* findMetadata(const Uuid& id) const;
    void reportUnknownType(const Uuid& id, AbstractLogger* logger) const;

    Map<Uuid, details::TypeMetadata*> typesById;
    Map<String, details::TypeMetadata*> typesByName;
    // Mutable because looking a creator up is no change, but the factory only hands out mutable ones.
    mutable CreatorFactory creators;
};

} // namespace utils
} // namespace tov

#include <tov/utils/TypeManager.inl>
