#pragma once

#include <tov/utils/TypeManager.h>
#include <tov/utils/details/MemberPropertyHolder.h>
#include <tov/utils/details/TypeId.h>

namespace tov {
namespace utils {

template <typename Owner, typename Value>
bool Property::setAccessors(const char* newKey, const Value& (Owner::*getter)() const,
                            void (Owner::*setter)(const Value&), const TypeManager& manager, AbstractLogger* logger)
{
    if (newKey == nullptr || *newKey == '\0') {
        return refuse(Refusal::name, logger);
    }
    if (getter == nullptr) {
        return refuse(Refusal::getter, logger);
    }
    if (setter == nullptr) {
        return refuse(Refusal::setter, logger);
    }
    if (!bind(newKey, details::getClassTypeId<Owner>(), details::getClassTypeId<Value>(), manager, logger)) {
        return false;
    }
    replaceHolder(TOV_NEW details::MemberPropertyHolder<Owner, Value>(getter, setter));
    return true;
}

template <typename Owner, typename Value>
const Value* Property::get(const Owner& owner) const
{
    assertValid();
    if (!isBoundTo(details::getClassTypeId<Owner>(), details::getClassTypeId<Value>())) {
        return nullptr;
    }
    return static_cast<const Value*>(holder->get(&owner));
}

template <typename Owner, typename Value>
Value* Property::mutableGet(Owner& owner) const
{
    assertValid();
    if (!isBoundTo(details::getClassTypeId<Owner>(), details::getClassTypeId<Value>())) {
        return nullptr;
    }
    return static_cast<Value*>(holder->mutableGet(&owner));
}

template <typename Owner, typename Value>
bool Property::set(Owner& owner, const Value& value) const
{
    assertValid();
    if (!isBoundTo(details::getClassTypeId<Owner>(), details::getClassTypeId<Value>())) {
        return false;
    }
    holder->set(&owner, &value);
    return true;
}

} // namespace utils
} // namespace tov
