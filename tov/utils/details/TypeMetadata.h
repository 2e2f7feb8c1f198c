#pragma once
// TypeMetadata: what the type manager knows of one type: its id, kind, name, direct bases and own
// properties. Owned by the TypeManager; hosts reach it through the manager.
//   details::TypeMetadata agent("sim::Agent", agentId);
//   forager.addBaseType(agent, logger);   // forager.isDerivedFrom(agent)

#include <tov/utils/Containers.h>
#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/Uuid.h>

namespace tov {
namespace utils {

class AbstractLogger;
class Property;

namespace details {

class TOV_UTILS_API TypeMetadata {
public:
    // The kind follows from the id: the ids of int and long long are integers, those of float and
    // double reals, that of bool a boolean, that of String a string; all others are objects.
    TypeMetadata(const char* name, const Uuid& id);
    ~TypeMetadata();
    TypeMetadata(const TypeMetadata&) = delete;
    TypeMetadata& operator=(const TypeMetadata&) = delete;

    const char* getName() const;
    const Uuid& getTypeId() const;
    type::Type getType() const;

    // Refuses a base that derives from this type (a cycle); a base reached already is not added again.
    [[nodiscard]] bool addBaseType(const TypeMetadata& base, AbstractLogger* logger);
    // Only a direct base is removed; the order of the others stays.
    void removeBaseType(const TypeMetadata& base);
    // Depth first through the bases; a type derives from itself.
    bool isDerivedFrom(const TypeMetadata& other) const;
    unsigned int countBaseTypes() const;
    // A bad index breaks the contract; null then.
    const TypeMetadata* getBaseType(unsigned int index) const;

    // Keeps a copy.
    void addProperty(const Property& property);
    bool hasProperty(const char* key) const;
    bool hasProperty(const char* key, unsigned int length) const;
    // The first own property whose name starts with the `length` characters of `key`, else the first
    // such property of the bases, searched in order; null when there is none.
    const Property* getProperty(const char* key) const;
    const Property* getProperty(const char* key, unsigned int length) const;
    // Own properties plus those of every direct base.
    unsigned int countProperties() const;
    // The bases' properties first, then the own ones. A bad index breaks the contract.
    const Property& getProperty(unsigned int index) const;

private:
    Uuid id;
    type::Type kind;
    String name;
    Vector<const TypeMetadata*> baseTypes;
    Vector<Property*> properties;
};

} // namespace details
} // namespace utils
} // namespace tov
