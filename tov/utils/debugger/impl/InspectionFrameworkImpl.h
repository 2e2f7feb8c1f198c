#pragma once
// InspectionFrameworkImpl: the state behind an InspectionFramework: the engine table and the routing of
// resource requests to it, the event subscriptions, the entities with their stacks of contexts, and the
// conditions that stop the simulation's threads. Private to the library.
//   InspectionFrameworkImpl impl(facilities, controller);   // "debug" is registered already
//   impl.registerEngine(hash, engine); impl.retrieveResource("/world/3", 8, &query, builder);

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/HashTable.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/DebuggerFramework.h>
#include <tov/utils/debugger/EngineDebuggerFacade.h>
#include <tov/utils/debugger/RequestRegistry.h>
#include <tov/utils/debugger/ResourceStatus.h>
#include <tov/utils/debugger/impl/EntityTable.h>

#include <atomic>

namespace tov {
namespace utils {

class AbstractObjectBuilder;
class DynamicObject;
class Facilities;

namespace debugger {

class AbstractContext;
class AbstractContextFactory;
class AbstractEngine;
class ExecutionController;

namespace impl {

// Locks: the table changes only under both locks, the engine list lock taken first; a reader holds
// either. So routing (state lock) and enableAllEngines (engine list lock) may run side by side, and
// both are safe against registration.
class InspectionFrameworkImpl : public AbstractEventListener {
public:
    // Registers the debugger engine under "debug".
    InspectionFrameworkImpl(Facilities& facilities, ExecutionController& controller);
    ~InspectionFrameworkImpl() override;
    InspectionFrameworkImpl(const InspectionFrameworkImpl&) = delete;
    InspectionFrameworkImpl& operator=(const InspectionFrameworkImpl&) = delete;

    Facilities& getFacilities() const;

    bool hasEngine(unsigned long long hash) const;
    // The engine under `hash` whose path is `path`, or null. A path that only shares the hash of a
    // registered one is no match.
    AbstractEngine* findEngine(unsigned long long hash, const char* path) const;
    // `hash` is the key of the engine's path in the facilities' string table.
    void registerEngine(unsigned long long hash, AbstractEngine& engine);
    // Disables the engine, then drops it from the table; the order of the others is kept.
    void unregisterEngine(unsigned long long hash, const char* path);
    // False when no engine has that path.
    [[nodiscard]] bool enableEngine(unsigned long long hash, const char* path);
    [[nodiscard]] bool disableEngine(unsigned long long hash, const char* path);
    // False when no engine has that path; otherwise `enabled` tells its state.
    [[nodiscard]] bool isEngineEnabled(unsigned long long hash, const char* path, bool& enabled) const;
    void enableAllEngines();
    void disableAllEngines();
    // [{"path": ..., "enabled": ...}] in the order of the paths; false when the builder refused a value.
    bool describeEngines(AbstractObjectBuilder& builder) const;

    resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject* query,
                                       AbstractObjectBuilder& builder) const;
    resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder);
    resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder);

    // The engine that a request path reaches, with in `offset` the count of request characters that the
    // engine's path took; null when none. The caller holds the state lock.
    AbstractEngine* route(const char* path, unsigned int length, unsigned int& offset) const;

    RequestRegistry& getRegistry();
    EngineDebuggerFacade& getFacade();
    DebuggerFramework& getDebugger();
    const DebuggerFramework& getDebugger() const;
    ExecutionController& getExecutionController() const;

    // Entities and their stacks of contexts, for the facade and the debugger engine.
    bool isEntityRegistered(unsigned int entity) const;
    bool areEntitiesRegistered(const unsigned int* entities, unsigned int count) const;
    void onEntitiesRegistration(AbstractEngine& engine, const unsigned int* entities, unsigned int count);
    void onEntitiesUnregistration(AbstractEngine& engine, const unsigned int* entities, unsigned int count);
    unsigned int countEntities() const;
    const unsigned int* getEntities() const;
    unsigned int countContexts(unsigned int entity) const;
    [[nodiscard]] AbstractContext* topContext(unsigned int entity, AbstractLogger* logger) const;
    [[nodiscard]] AbstractContext* getContext(unsigned int entity, unsigned int index, AbstractLogger* logger) const;
    void pushContext(AbstractEngine& engine, unsigned int entity, AbstractContextFactory& factory);
    AbstractContext* popContext(AbstractEngine& engine, unsigned int entity);
    void invalidateContexts(const AbstractEngine& engine);
    Vector<AbstractContext*> cleanRelatedContexts(const AbstractEngine& engine);

    // Suspension and stepping: each arms a condition that a push or pop meets on a simulation thread.
    void clearSuspensionRequests();
    void suspend();
    bool suspendEntity(unsigned int entity);
    unsigned int getSuspendedEntity() const;
    // Read without the lock, as the resource documents show it.
    unsigned int peekSuspendedEntity() const;
    void resume();
    void stepIn();
    void stepOut();
    void stepOver();

    // Told of every subscription made through the framework; keeps the entity of the last stop.
    void onInitialization(unsigned int requestId) override;
    void onTermination(unsigned int requestId) override;
    void onSuspension(unsigned int requestId, unsigned int entity) override;
    void onDisconnection(unsigned int requestId) override;
    void onRegistration(unsigned int requestId, unsigned int entity) override;
    void onUnregistration(unsigned int requestId, unsigned int entity) override;
    void onBreakpoint(unsigned int requestId, unsigned int entity, const Uri& location) override;

private:
    // A push or a pop without the stop it may call for: the result (or `stop`) tells whether an armed
    // condition was met.
    bool pushFrame(AbstractEngine& engine, unsigned int entity, AbstractContextFactory& factory);
    AbstractContext* popFrame(AbstractEngine& engine, unsigned int entity, bool& stop);
    using Stack = EntityTable::Stack;

    AbstractEngine* findEngineLocked(unsigned long long hash, const char* path) const;
    // The key of the engine's path, computed without the string table, which simulation threads must not
    // touch unguarded; an engine that pushes frames need not be registered.
    unsigned long long computeEngineKey(const AbstractEngine& engine) const;
    // The same key, for a caller that holds the state lock: a registered engine's is the key it is
    // registered under (its path cannot change), which spares hashing the path on every push and pop.
    unsigned long long findEngineKeyLocked(const AbstractEngine& engine) const;
    // The stack of a registered entity, or null with a message to `logger` (which may be null).
    [[nodiscard]] const Stack* findReportedStack(unsigned int entity, AbstractLogger* logger) const;
    // These two: the caller holds the state lock.
    bool isInvalidated(unsigned long long engineKey) const;
    // Whether an armed condition meets this entity with `top` as its new top frame.
    bool isArmedFor(unsigned int entity, const AbstractContext* top) const;
    template <typename Call>
    resources::Status routeCall(const char* path, unsigned int length, Call call) const;
    // Tells the suspension subscribers, then waits in the gate; the caller holds no lock.
    void stopHere(unsigned int entity);

    HashTable<AbstractEngine*> engines;
    RequestRegistry requests;
    Facilities* facilities;
    // Recursive: an engine called under it comes back for entities and contexts.
    mutable Mutex stateLock;
    mutable Mutex engineListLock;
    EngineDebuggerFacade facade;
    DebuggerFramework debugger;
    // Not owned.
    ExecutionController* controller;
    bool suspendEverything;
    // Atomic because the listener stores it without a lock while commands read it.
    std::atomic<unsigned int> suspendedEntity;
    AbstractContext* stepOutContext;
    AbstractContext* stepOverContext;
    EntityTable entities;
    Set<unsigned int> suspendEntities;
    Map<unsigned long long, Stack> engineContexts;
    Set<unsigned long long> invalidatedEngines;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
