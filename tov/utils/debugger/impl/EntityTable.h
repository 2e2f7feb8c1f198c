#pragma once
// EntityTable: the entities that engines registered on the inspection framework, in registration order,
// with the stack of contexts of each. Private to the library; InspectionFrameworkImpl guards it with its
// state lock.
//   table.append(7);                          // table.isRegistered(7), table.count() == 1
//   table.findForPush(7).getStack().push_back(context);
//   table.remove(7);                          // 7 leaves the list; its (emptied) stack stays

#include <tov/allocator/StdAllocator.h>
#include <tov/utils/Containers.h>

#include <unordered_map>

namespace tov {
namespace utils {
namespace debugger {

class AbstractContext;

namespace impl {

// The list keeps what hosts registered, in order, a batch with one new id appended whole (so an id can
// stand in it more than once), and its length is the count that clients see. The debugger's resources
// take a number below that count as the entity's id itself: they assume ids dense from 0 and the
// table does not enforce it. Removal takes every occurrence of the id out of the list and keeps its
// stack, which the caller has emptied: a stack outlives its entity, so that a context pushed late by an
// engine still finds one.
class EntityTable {
public:
    // Bottom frame first; the frames above the bottom one belong to the engines that pushed them.
    using Stack = Deque<AbstractContext*>;
    using Stacks = Map<unsigned int, Stack>;

private:
    // How often the id stands in `entities`, and its stack in `stacks` once it has one.
    struct Slot {
        unsigned int registrations = 0;
        Stack* stack = nullptr;
    };

public:
    // What a push needs of an entity, found in one lookup whatever the number of entities.
    class PushSlot {
    public:
        bool isRegistered() const;
        // Made on the entity's first push.
        Stack& getStack();

    private:
        friend class EntityTable;
        PushSlot(EntityTable& table, unsigned int entity);

        EntityTable* table;
        unsigned int entity;
        Slot* slot;
    };

    bool isRegistered(unsigned int entity) const;
    unsigned int count() const;
    // Valid until the next registration.
    const unsigned int* getEntities() const;
    // Room for `more` appends at once.
    void reserve(unsigned int more);
    void append(unsigned int entity);
    void remove(unsigned int entity);

    // Null when the entity never had a stack; `registered` tells, in the same lookup, whether it is
    // registered.
    Stack* findStack(unsigned int entity) const;
    Stack* findStack(unsigned int entity, bool& registered) const;
    PushSlot findForPush(unsigned int entity);
    // Every stack ever made, for the walks that clean or destroy frames of all entities.
    Stacks& getStacks();

private:
    using Index = std::unordered_map<unsigned int, Slot, std::hash<unsigned int>, std::equal_to<unsigned int>,
                                     allocator::StdAllocator<std::pair<const unsigned int, Slot>>>;

    Vector<unsigned int> entities;
    Stacks stacks;
    Index index;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
