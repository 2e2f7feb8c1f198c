#pragma once

#include <tov/utils/Assertion.h>
#include <tov/utils/Memory.h>
#include <tov/utils/Property.h>

namespace tov {
namespace utils {
namespace details {

template <typename Owner, typename Value>
MemberPropertyHolder<Owner, Value>::MemberPropertyHolder(Getter getter, Setter setter)
    : PropertyHolder(Property::accessors_Get | Property::accessors_Set), getter(getter), setter(setter)
{
}

template <typename Owner, typename Value>
MemberPropertyHolder<Owner, Value>* MemberPropertyHolder<Owner, Value>::clone() const
{
    return TOV_NEW MemberPropertyHolder(*this);
}

template <typename Owner, typename Value>
const Value& MemberPropertyHolder<Owner, Value>::get(const Owner& owner) const
{
    return (owner.*getter)();
}

template <typename Owner, typename Value>
Value& MemberPropertyHolder<Owner, Value>::mutableGet(Owner& owner) const
{
    TOV_ASSERT(false, "Mutable get not available");
    return const_cast<Value&>((owner.*getter)());
}

template <typename Owner, typename Value>
void MemberPropertyHolder<Owner, Value>::set(Owner& owner, const Value& value) const
{
    (owner.*setter)(value);
}

template <typename Owner, typename Value>
const void* MemberPropertyHolder<Owner, Value>::get(const void* owner) const
{
    return &get(*static_cast<const Owner*>(owner));
}

template <typename Owner, typename Value>
void* MemberPropertyHolder<Owner, Value>::mutableGet(void* owner) const
{
    return &mutableGet(*static_cast<Owner*>(owner));
}

template <typename Owner, typename Value>
void MemberPropertyHolder<Owner, Value>::set(void* owner, const void* value) const
{
    set(*static_cast<Owner*>(owner), *static_cast<const Value*>(value));
}

} // namespace details
} // namespace utils
} // namespace tov
