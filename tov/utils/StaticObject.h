#pragma once
// StaticObject: the root of the classes that the type manager knows by type id and can create through a
// registered creator. A class joins by naming TOV_STATIC_OBJECT first in its body and defining its
// identity with one of the TOV_STATIC_OBJECT_DEFINE_* macros in its source file:
//   class Forager : public tov::utils::StaticObject { TOV_STATIC_OBJECT public: ... };
//   TOV_STATIC_OBJECT_DEFINE_DERIVED(Forager, tov::utils::StaticObject, "sim::Forager", "5f0c6ad2-...")

#include <tov/utils/Export.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/Uuid.h>

namespace tov {
namespace utils {

class AbstractLogger;

class TOV_UTILS_API StaticObject {
public:
    // States a class's metadata (its bases, its properties) in a type manager where it is registered.
    using MetadataSetter = bool (*)(TypeManager& typeManager, AbstractLogger* logger);

    StaticObject() = default;

    // The identity of the object's most derived class.
    virtual const char* getTypeName() const;
    virtual const Uuid& getTypeId() const;
    virtual MetadataSetter getMetadataSetter();
    virtual ~StaticObject();

    // "tov::utils::StaticObject", and its id.
    static const char* getClassTypeName();
    static const Uuid& getClassTypeId();
    static MetadataSetter getClassMetadataSetter();

private:
    [[nodiscard]] static bool internalSetMetadata(TypeManager& typeManager, AbstractLogger* logger);
};

} // namespace utils
} // namespace tov

// Declares the identity of a class derived from StaticObject. Name it first in the class body: it leaves
// the section private, as a class body starts.
#define TOV_STATIC_OBJECT                                                                                              \
public:                                                                                                                \
    const char* getTypeName() const override;                                                                          \
    const ::tov::utils::Uuid& getTypeId() const override;                                                              \
    ::tov::utils::StaticObject::MetadataSetter getMetadataSetter() override;                                           \
    static const char* getClassTypeName();                                                                             \
    static const ::tov::utils::Uuid& getClassTypeId();                                                                 \
    static ::tov::utils::StaticObject::MetadataSetter getClassMetadataSetter();                                        \
                                                                                                                       \
private:                                                                                                               \
    [[nodiscard]] static bool internalSetMetadata(::tov::utils::TypeManager& typeManager,                              \
                                                  ::tov::utils::AbstractLogger* logger);

// Defines the name and id of `Class` and the virtual forms that hand them out; the class's own source
// file then defines internalSetMetadata, or uses one of the two macros below instead. The id is read on
// first use from its literal, so that ids need no order of static construction.
#define TOV_STATIC_OBJECT_DEFINE_IDENTITY(Class, typeName, typeId)                                                     \
    const char* Class::getClassTypeName()                                                                              \
    {                                                                                                                  \
        static const char* const name = typeName;                                                                      \
        return name;                                                                                                   \
    }                                                                                                                  \
    const ::tov::utils::Uuid& Class::getClassTypeId()                                                                  \
    {                                                                                                                  \
        static const ::tov::utils::Uuid id = [] {                                                                      \
            ::tov::utils::Uuid read;                                                                                   \
            static_cast<void>(read.set(typeId, nullptr));                                                              \
            return read;                                                                                               \
        }();                                                                                                           \
        return id;                                                                                                     \
    }                                                                                                                  \
    ::tov::utils::StaticObject::MetadataSetter Class::getClassMetadataSetter()                                         \
    {                                                                                                                  \
        return &Class::internalSetMetadata;                                                                            \
    }                                                                                                                  \
    const char* Class::getTypeName() const                                                                             \
    {                                                                                                                  \
        return Class::getClassTypeName();                                                                              \
    }                                                                                                                  \
    const ::tov::utils::Uuid& Class::getTypeId() const                                                                 \
    {                                                                                                                  \
        return Class::getClassTypeId();                                                                                \
    }                                                                                                                  \
    ::tov::utils::StaticObject::MetadataSetter Class::getMetadataSetter()                                              \
    {                                                                                                                  \
        return Class::getClassMetadataSetter();                                                                        \
    }

// A class with no base in the metadata: its metadata setter has nothing to state.
#define TOV_STATIC_OBJECT_DEFINE_ROOT(Class, typeName, typeId)                                                         \
    TOV_STATIC_OBJECT_DEFINE_IDENTITY(Class, typeName, typeId)                                                         \
    bool Class::internalSetMetadata(::tov::utils::TypeManager&, ::tov::utils::AbstractLogger*)                         \
    {                                                                                                                  \
        return true;                                                                                                   \
    }

// A class whose metadata derives from `Base`, which must be registered first.
#define TOV_STATIC_OBJECT_DEFINE_DERIVED(Class, Base, typeName, typeId)                                                \
    TOV_STATIC_OBJECT_DEFINE_IDENTITY(Class, typeName, typeId)                                                         \
    bool Class::internalSetMetadata(::tov::utils::TypeManager& typeManager, ::tov::utils::AbstractLogger* logger)      \
    {                                                                                                                  \
        return typeManager.addBaseType(Class::getClassTypeId(), Base::getClassTypeId(), logger);                       \
    }
