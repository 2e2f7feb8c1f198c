#include <tov/utils/debugger/impl/EntityTable.h>

#include <algorithm>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

EntityTable::PushSlot::PushSlot(EntityTable& table, unsigned int entity)
    : table(&table), entity(entity), slot(&table.index[entity])
{
}

bool EntityTable::PushSlot::isRegistered() const
{
    return slot->registrations != 0;
}

EntityTable::Stack& EntityTable::PushSlot::getStack()
{
    if (slot->stack == nullptr) {
        slot->stack = &table->stacks[entity];
    }
    return *slot->stack;
}

bool EntityTable::isRegistered(unsigned int entity) const
{
    const Index::const_iterator slot = index.find(entity);
    return slot != index.end() && slot->second.registrations != 0;
}

unsigned int EntityTable::count() const
{
    return static_cast<unsigned int>(entities.size());
}

const unsigned int* EntityTable::getEntities() const
{
    return entities.data();
}

void EntityTable::reserve(unsigned int more)
{
    entities.reserve(entities.size() + more);
}

void EntityTable::append(unsigned int entity)
{
    entities.push_back(entity);
    ++index[entity].registrations;
}

void EntityTable::remove(unsigned int entity)
{
    entities.erase(std::remove(entities.begin(), entities.end(), entity), entities.end());
    index[entity].registrations = 0;
}

EntityTable::Stack* EntityTable::findStack(unsigned int entity) const
{
    const Index::const_iterator slot = index.find(entity);
    return slot != index.end() ? slot->second.stack : nullptr;
}

EntityTable::Stack* EntityTable::findStack(unsigned int entity, bool& registered) const
{
    const Index::const_iterator slot = index.find(entity);
    registered = slot != index.end() && slot->second.registrations != 0;
    return slot != index.end() ? slot->second.stack : nullptr;
}

EntityTable::PushSlot EntityTable::findForPush(unsigned int entity)
{
    return PushSlot(*this, entity);
}

EntityTable::Stacks& EntityTable::getStacks()
{
    return stacks;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
