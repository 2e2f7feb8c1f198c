#pragma once
// Property: one named, typed member of a registered type, with the accessors that read and write it on
// an object of that type without the caller knowing the classes behind them.
//   const tov::utils::Property& x = typeManager.getProperty(vector3Id, "x");   // x.isReal()
//   x.set(position, 2.0);   // position.getX() == 2.0, for a Vector3<double> position

#include <tov/utils/DynamicType.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/Uuid.h>

#include <iosfwd>

namespace tov {
namespace utils {

class AbstractLogger;
class TypeManager;

namespace details {
class PropertyHolder;
}

class TOV_UTILS_API Property {
public:
    // What a holder can do, as a bit set.
    static const unsigned char accessors_Get = 1;
    static const unsigned char accessors_MutableGet = 2;
    static const unsigned char accessors_Set = 4;

    // An invalid property, until setAccessors succeeds.
    Property();
    Property(const Property& other);
    Property& operator=(const Property& other);
    ~Property();

    // Binds the property to `key` on the type `Owner`, whose value of type `Value` is read by `getter`
    // and written by `setter`. Both types must be registered in `typeManager`, which must outlive the
    // property. On failure the property is left invalid and the result is false, with a message.
    template <typename Owner, typename Value>
    [[nodiscard]] bool setAccessors(const char* key, const Value& (Owner::*getter)() const,
                                    void (Owner::*setter)(const Value&), const TypeManager& typeManager,
                                    AbstractLogger* logger);

    bool isValid() const;

    // The operations below break the contract on an invalid property, unless said otherwise.
    bool hasMutableGet() const;
    const char* getKey() const;
    const TypeManager& getTypeManager() const;
    // The type of the value.
    const Uuid& getTypeId() const;
    const char* getTypeName() const;
    type::Type getType() const;
    // The type that the property belongs to.
    const Uuid& getOwnerTypeId() const;

    bool isInt() const;
    bool isReal() const;
    bool isBool() const;
    bool isString() const;
    bool isObject() const;
    // False on an invalid property, without an assertion.
    bool isStaticObject() const;
    // These compare ids only: false on an invalid property, without an assertion.
    bool isDynamicObject() const;
    bool isVector2() const;
    bool isVector3() const;
    bool isQuaternion() const;

    // Whether a value of kind `type` fits: anything fits a null, integers and reals fit each other.
    bool isTypeCompatible(type::Type type) const;

    // Typed access through the holder. `Owner` and `Value` must be the types that the property was bound
    // to: otherwise nothing is read or written, and the result is null or false.
    template <typename Owner, typename Value>
    const Value* get(const Owner& owner) const;
    // Available only to holders with accessors_MutableGet; others break the contract, then read.
    template <typename Owner, typename Value>
    Value* mutableGet(Owner& owner) const;
    template <typename Owner, typename Value>
    bool set(Owner& owner, const Value& value) const;

private:
    enum class Refusal { name, getter, setter, ownerType, valueType };

    // Logs the refusal and leaves the property invalid; false.
    bool refuse(Refusal refusal, AbstractLogger* logger);
    // Stores the key, the ids and the manager, and checks that both types are registered.
    [[nodiscard]] bool bind(const char* key, const Uuid& ownerId, const Uuid& valueId, const TypeManager& manager,
                            AbstractLogger* logger);
    void replaceHolder(details::PropertyHolder* newHolder);
    void assertValid() const;
    bool isBoundTo(const Uuid& ownerId, const Uuid& valueId) const;

    String key;
    Uuid ownerType;
    Uuid valueType;
    details::PropertyHolder* holder;
    const TypeManager* typeManager;
};

// The type name of the value, "::" and the key, as "double::x".
TOV_UTILS_API std::ostream& operator<<(std::ostream& stream, const Property& property);

} // namespace utils
} // namespace tov

#include <tov/utils/Property.inl>
