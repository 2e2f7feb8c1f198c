// InspectionFrameworkImpl: the entities that engines register, their stacks of contexts, and the
// conditions (suspend, steps) that stop a simulation thread on a push or a pop.
#include <tov/utils/debugger/impl/InspectionFrameworkImpl.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/debugger/AbstractContext.h>
#include <tov/utils/debugger/AbstractContextFactory.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/EntityRegistrationRequest.h>
#include <tov/utils/debugger/EntityRegistrationRequestVisitor.h>
#include <tov/utils/debugger/EntityUnregistrationRequest.h>
#include <tov/utils/debugger/EntityUnregistrationRequestVisitor.h>
#include <tov/utils/debugger/ExecutionController.h>
#include <tov/utils/debugger/TargetSuspendRequest.h>
#include <tov/utils/debugger/TargetSuspendRequestVisitor.h>
#include <tov/utils/debugger/impl/MainContext.h>
#include <tov/utils/debugger/impl/MainContextFactory.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

class RegistrationNotifier : public EntityRegistrationRequestVisitor {
public:
    using EntityRegistrationRequestVisitor::EntityRegistrationRequestVisitor;
    using EntityRegistrationRequestVisitor::visit;
    void visit(EntityRegistrationRequest& request) override { request.notify(getEntity()); }
};

class UnregistrationNotifier : public EntityUnregistrationRequestVisitor {
public:
    using EntityUnregistrationRequestVisitor::EntityUnregistrationRequestVisitor;
    using EntityUnregistrationRequestVisitor::visit;
    void visit(EntityUnregistrationRequest& request) override { request.notify(getEntity()); }
};

class SuspensionNotifier : public TargetSuspendRequestVisitor {
public:
    using TargetSuspendRequestVisitor::TargetSuspendRequestVisitor;
    using TargetSuspendRequestVisitor::visit;
    void visit(TargetSuspendRequest& request) override { request.notify(getEntity()); }
};

bool isMainContext(const AbstractContext* context)
{
    return context != nullptr && context->getTypeId() == MainContext::getClassTypeId();
}

bool holds(const Deque<AbstractContext*>& contexts, const AbstractContext* context)
{
    return std::find(contexts.begin(), contexts.end(), context) != contexts.end();
}

} // namespace

unsigned long long InspectionFrameworkImpl::computeEngineKey(const AbstractEngine& engine) const
{
    const char* path = engine.getPath();
    if (path == nullptr) {
        path = "";
    }
    return StringTable::computeHash(path, static_cast<unsigned int>(std::strlen(path)),
                                    facilities->getStringTable().getSeed());
}

unsigned long long InspectionFrameworkImpl::findEngineKeyLocked(const AbstractEngine& engine) const
{
    for (const HashTable<AbstractEngine*>::Entry& entry : engines) {
        if (entry.value == &engine) {
            return entry.key;
        }
    }
    return computeEngineKey(engine);
}

bool InspectionFrameworkImpl::isEntityRegistered(unsigned int entity) const
{
    ScopedMutex state(stateLock);
    return entities.isRegistered(entity);
}

bool InspectionFrameworkImpl::areEntitiesRegistered(const unsigned int* ids, unsigned int count) const
{
    ScopedMutex state(stateLock);
    for (unsigned int i = 0; i < count; ++i) {
        if (!entities.isRegistered(ids[i])) {
            return false;
        }
    }
    return true;
}

// QUIRK(registration-batch-appends-all): a batch with one new id is appended whole, known ids
// included, and each gets a bottom frame; kept because hosts register each entity once.
void InspectionFrameworkImpl::onEntitiesRegistration(AbstractEngine& engine, const unsigned int* ids,
                                                     unsigned int count)
{
    ScopedMutex state(stateLock);
    if (areEntitiesRegistered(ids, count)) {
        return;
    }
    entities.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        entities.append(ids[i]);
    }
    MainContextFactory factory;
    for (unsigned int i = 0; i < count; ++i) {
        // The bottom frame never stops its thread: a registration holds the state lock across its
        // pushes, and a thread stopped here would hold it while suspended, so that no client could be
        // answered, nor resume it. The same holds for the pop of an unregistration.
        pushFrame(engine, ids[i], factory);
        RegistrationNotifier notifier(ids[i]);
        requests.accept(notifier);
    }
}

void InspectionFrameworkImpl::onEntitiesUnregistration(AbstractEngine& engine, const unsigned int* ids,
                                                       unsigned int count)
{
    ScopedMutex state(stateLock);
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int id = ids[i];
        if (!entities.isRegistered(id)) {
            continue;
        }
        Stack* stack = entities.findStack(id);
        TOV_ASSERT(stack != nullptr, "There is no context for entity #" << id << ".");
        TOV_ASSERT(stack == nullptr || !stack->empty(), "There is a mismatch number of push/pop contexts.");
        const bool framesLeft =
            stack != nullptr && std::any_of(stack->begin() + std::min<std::size_t>(stack->size(), 1), stack->end(),
                                            [](const AbstractContext* context) { return context != nullptr; });
        TOV_ASSERT(!framesLeft, "Not all contexts have been removed.");
        // Past a failed check the bottom frame is not the framework's to destroy: the entity stays.
        if (stack == nullptr || stack->empty() || framesLeft) {
            continue;
        }
        bool armed = false;
        AbstractContext* popped = popFrame(engine, id, armed);
        for (auto& entry : engineContexts) {
            const Stack::iterator found = std::find(entry.second.begin(), entry.second.end(), popped);
            if (found != entry.second.end()) {
                entry.second.erase(found);
                break;
            }
        }
        TOV_DELETE(popped);
        stack->clear();
        entities.remove(id);
        UnregistrationNotifier notifier(id);
        requests.accept(notifier);
    }
}

unsigned int InspectionFrameworkImpl::countEntities() const
{
    ScopedMutex state(stateLock);
    return entities.count();
}

const unsigned int* InspectionFrameworkImpl::getEntities() const
{
    ScopedMutex state(stateLock);
    return entities.getEntities();
}

unsigned int InspectionFrameworkImpl::countContexts(unsigned int entity) const
{
    ScopedMutex state(stateLock);
    const Stack* stack = entities.findStack(entity);
    return stack != nullptr ? static_cast<unsigned int>(stack->size()) : 0;
}

const InspectionFrameworkImpl::Stack* InspectionFrameworkImpl::findReportedStack(unsigned int entity,
                                                                                 AbstractLogger* logger) const
{
    if (!entities.isRegistered(entity)) {
        TOV_LOG_ERROR(logger, error::invalidArgument, "Entity '" << entity << "' is not registered on the debugger.");
        return nullptr;
    }
    const Stack* stack = entities.findStack(entity);
    if (stack == nullptr) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "There is no context for entity '" << entity << "'.");
    }
    return stack;
}

AbstractContext* InspectionFrameworkImpl::topContext(unsigned int entity, AbstractLogger* logger) const
{
    ScopedMutex state(stateLock);
    const Stack* stack = findReportedStack(entity, logger);
    // A stack emptied by cleanRelatedContexts has no top.
    return stack == nullptr || stack->empty() ? nullptr : stack->back();
}

AbstractContext* InspectionFrameworkImpl::getContext(unsigned int entity, unsigned int index,
                                                     AbstractLogger* logger) const
{
    ScopedMutex state(stateLock);
    const Stack* stack = findReportedStack(entity, logger);
    if (stack == nullptr) {
        return nullptr;
    }
    if (index >= stack->size()) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Index '" << index << "' is out of bound.");
        return nullptr;
    }
    return (*stack)[index];
}

// The armed conditions are tested in the same hold of the lock as the push; the thread stops, if it must,
// only after letting the lock go.
void InspectionFrameworkImpl::pushContext(AbstractEngine& engine, unsigned int entity, AbstractContextFactory& factory)
{
    if (pushFrame(engine, entity, factory)) {
        stopHere(entity);
    }
}

bool InspectionFrameworkImpl::pushFrame(AbstractEngine& engine, unsigned int entity, AbstractContextFactory& factory)
{
    bool stop = false;
    {
        ScopedMutex state(stateLock);
        const unsigned long long key = findEngineKeyLocked(engine);
        EntityTable::PushSlot slot = entities.findForPush(entity);
        TOV_ASSERT(slot.isRegistered(), "Entity '" << entity << "' is not registered on the debugger.");
        AbstractContext* context = factory.create();
        slot.getStack().push_back(context);
        engineContexts[key].push_back(context);
        stop = !isInvalidated(key) && isArmedFor(entity, context);
    }
    return stop;
}

AbstractContext* InspectionFrameworkImpl::popContext(AbstractEngine& engine, unsigned int entity)
{
    bool stop = false;
    AbstractContext* popped = popFrame(engine, entity, stop);
    if (stop) {
        stopHere(entity);
    }
    return popped;
}

AbstractContext* InspectionFrameworkImpl::popFrame(AbstractEngine& engine, unsigned int entity, bool& stop)
{
    AbstractContext* popped = nullptr;
    {
        ScopedMutex state(stateLock);
        const unsigned long long key = findEngineKeyLocked(engine);
        bool registered = false;
        Stack* stack = entities.findStack(entity, registered);
        TOV_ASSERT(registered, "Entity '" << entity << "' is not registered on the debugger.");
        // The engine's newest frame, whichever entity it belongs to: cleaning searches by value.
        const auto pushed = engineContexts.find(key);
        if (pushed != engineContexts.end() && !pushed->second.empty()) {
            pushed->second.pop_back();
        }
        TOV_ASSERT(stack != nullptr && !stack->empty(),
                   "Cannot pop context on a empty stack frames for entity '" << entity << "'.");
        // QUIRK(pop-empty-stack): an empty stack has nothing to give, whatever the assertion function
        // decided: null, the smallest safe answer, instead of reading past the stack.
        if (stack == nullptr || stack->empty()) {
            return nullptr;
        }
        popped = stack->back();
        stack->pop_back();
        AbstractContext* top = stack->empty() ? nullptr : stack->back();
        // Stepping over a frame that returns goes on in its caller.
        if (popped != nullptr && popped == stepOverContext) {
            stepOverContext = top;
        }
        stop = !isInvalidated(key) && isArmedFor(entity, top);
    }
    return popped;
}

// Takes the state lock although the engine calls it while none of its threads pushes: other engines'
// threads may push on the same stacks meanwhile.
void InspectionFrameworkImpl::invalidateContexts(const AbstractEngine& engine)
{
    ScopedMutex state(stateLock);
    const unsigned long long key = computeEngineKey(engine);
    invalidatedEngines.insert(key);
    const auto pushed = engineContexts.find(key);
    if (pushed == engineContexts.end()) {
        return;
    }
    for (AbstractContext* context : pushed->second) {
        if (context != nullptr) {
            context->invalidate();
        }
    }
}

Vector<AbstractContext*> InspectionFrameworkImpl::cleanRelatedContexts(const AbstractEngine& engine)
{
    ScopedMutex state(stateLock);
    const unsigned long long key = computeEngineKey(engine);
    invalidatedEngines.erase(key);
    Vector<AbstractContext*> removed;
    const auto pushed = engineContexts.find(key);
    if (pushed == engineContexts.end() || pushed->second.empty()) {
        return removed;
    }
    for (auto& entry : entities.getStacks()) {
        Stack& stack = entry.second;
        const std::size_t first = !stack.empty() && isMainContext(stack.front()) ? 1 : 0;
        for (std::size_t i = first; i < stack.size(); ++i) {
            if (holds(pushed->second, stack[i])) {
                removed.push_back(stack[i]);
                stack[i] = nullptr;
            }
        }
        stack.erase(std::remove(stack.begin(), stack.end(), nullptr), stack.end());
    }
    pushed->second.resize(isMainContext(pushed->second.front()) ? 1 : 0);
    return removed;
}

void InspectionFrameworkImpl::clearSuspensionRequests()
{
    ScopedMutex state(stateLock);
    suspendEverything = false;
    suspendEntities.clear();
    stepOutContext = nullptr;
    stepOverContext = nullptr;
}

void InspectionFrameworkImpl::suspend()
{
    ScopedMutex state(stateLock);
    clearSuspensionRequests();
    suspendEverything = true;
}

bool InspectionFrameworkImpl::suspendEntity(unsigned int entity)
{
    ScopedMutex state(stateLock);
    if (!entities.isRegistered(entity)) {
        return false;
    }
    clearSuspensionRequests();
    suspendEntities.insert(entity);
    return true;
}

unsigned int InspectionFrameworkImpl::getSuspendedEntity() const
{
    ScopedMutex state(stateLock);
    return suspendedEntity.load(std::memory_order_relaxed);
}

unsigned int InspectionFrameworkImpl::peekSuspendedEntity() const
{
    return suspendedEntity.load(std::memory_order_relaxed);
}

void InspectionFrameworkImpl::resume()
{
    clearSuspensionRequests();
    controller->resume();
}

void InspectionFrameworkImpl::stepIn()
{
    clearSuspensionRequests();
    suspendEntity(peekSuspendedEntity());
    controller->resume();
}

// The step commands read the stacks under the lock, which the resource tree holds already: a host calling
// them directly runs beside the simulation's pushes. The gate opens outside it.
void InspectionFrameworkImpl::stepOut()
{
    clearSuspensionRequests();
    {
        ScopedMutex state(stateLock);
        const Stack* stack = entities.findStack(peekSuspendedEntity());
        if (stack != nullptr && stack->size() > 1) {
            stepOutContext = (*stack)[stack->size() - 2];
        }
    }
    controller->resume();
}

void InspectionFrameworkImpl::stepOver()
{
    clearSuspensionRequests();
    {
        ScopedMutex state(stateLock);
        const Stack* stack = entities.findStack(peekSuspendedEntity());
        if (stack != nullptr && !stack->empty()) {
            stepOverContext = stack->back();
        }
    }
    controller->resume();
}

bool InspectionFrameworkImpl::isInvalidated(unsigned long long engineKey) const
{
    return !invalidatedEngines.empty() && invalidatedEngines.count(engineKey) != 0;
}

bool InspectionFrameworkImpl::isArmedFor(unsigned int entity, const AbstractContext* top) const
{
    return suspendEverything || (!suspendEntities.empty() && suspendEntities.count(entity) != 0) ||
           (top != nullptr && (top == stepOutContext || top == stepOverContext));
}

// Called without the lock, so that listeners may call back and the stopped thread holds nothing.
void InspectionFrameworkImpl::stopHere(unsigned int entity)
{
    SuspensionNotifier notifier(entity);
    requests.accept(notifier);
    controller->suspend();
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
