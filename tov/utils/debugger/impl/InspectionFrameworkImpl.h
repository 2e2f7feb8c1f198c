#pragma once
// InspectionFrameworkImpl: the engine table of an InspectionFramework and the routing of resource
// requests to it, under the framework's two locks. Private to the library.
//   InspectionFrameworkImpl impl(facilities);
//   impl.registerEngine(hash, engine); impl.retrieveResource("/world/3", 8, &query, builder);

#include <tov/utils/Export.h>
#include <tov/utils/HashTable.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/ResourceStatus.h>

namespace tov {
namespace utils {

class AbstractObjectBuilder;
class DynamicObject;
class Facilities;

namespace debugger {

class AbstractEngine;

namespace impl {

// Locks: the table changes only under both locks, the engine list lock taken first; a reader holds
// either. So routing (state lock) and enableAllEngines (engine list lock) may run side by side, and
// both are safe against registration.
class TOV_UTILS_API InspectionFrameworkImpl : public AbstractEventListener {
public:
    explicit InspectionFrameworkImpl(Facilities& facilities);
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
    bool enableEngine(unsigned long long hash, const char* path);
    bool disableEngine(unsigned long long hash, const char* path);
    // False when no engine has that path; otherwise `enabled` tells its state.
    bool isEngineEnabled(unsigned long long hash, const char* path, bool& enabled) const;
    void enableAllEngines();
    void disableAllEngines();

    resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject* query,
                                       AbstractObjectBuilder& builder) const;
    resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder);
    resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder);

    // The engine that a request path reaches, with in `offset` the count of request characters that the
    // engine's path took; null when none. The caller holds the state lock.
    AbstractEngine* route(const char* path, unsigned int length, unsigned int& offset) const;

    // Told of every subscription made through the framework.
    void onInitialization(unsigned int requestId) override;
    void onTermination(unsigned int requestId) override;
    void onSuspension(unsigned int requestId, unsigned int entity) override;
    void onDisconnection(unsigned int requestId) override;
    void onRegistration(unsigned int requestId, unsigned int entity) override;
    void onUnregistration(unsigned int requestId, unsigned int entity) override;
    void onBreakpoint(unsigned int requestId, unsigned int entity, const Uri& location) override;

private:
    AbstractEngine* findEngineLocked(unsigned long long hash, const char* path) const;

    HashTable<AbstractEngine*> engines;
    Facilities* facilities;
    // Recursive: an engine called under it comes back for entities and contexts.
    mutable Mutex stateLock;
    mutable Mutex engineListLock;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
