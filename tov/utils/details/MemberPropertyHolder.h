#pragma once
// MemberPropertyHolder: a property read and written by a const getter and a setter member of its owner.
// It has no mutable access: the value may well be no member that a reference could reach.
//   details::MemberPropertyHolder<Vector3<double>, double> x(&Vector3<double>::getX, &Vector3<double>::setX);
//   x.set(position, 2.0);   // x.get(position) == 2.0

#include <tov/utils/details/PropertyHolder.h>

namespace tov {
namespace utils {
namespace details {

template <typename Owner, typename Value>
class MemberPropertyHolder : public PropertyHolder {
public:
    using Getter = const Value& (Owner::*)() const;
    using Setter = void (Owner::*)(const Value&);

    MemberPropertyHolder(Getter getter, Setter setter);

    MemberPropertyHolder* clone() const override;

    const Value& get(const Owner& owner) const;
    // Breaks the contract ("Mutable get not available"), then hands out what the getter gives.
    Value& mutableGet(Owner& owner) const;
    void set(Owner& owner, const Value& value) const;

    const void* get(const void* owner) const override;
    void* mutableGet(void* owner) const override;
    void set(void* owner, const void* value) const override;

private:
    MemberPropertyHolder(const MemberPropertyHolder&) = default;

    Getter getter;
    Setter setter;
};

} // namespace details
} // namespace utils
} // namespace tov

#include <tov/utils/details/MemberPropertyHolder.inl>
