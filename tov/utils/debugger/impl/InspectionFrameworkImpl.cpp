// InspectionFrameworkImpl: the engine table and the routing of resource requests to it. The entities,
// their stacks of contexts and the conditions that stop them are in InspectionFrameworkImplEntities.cpp.
#include <tov/utils/debugger/impl/InspectionFrameworkImpl.h>

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Assertion.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/debugger/AbstractContext.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/impl/PathSegment.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

InspectionFrameworkImpl::InspectionFrameworkImpl(Facilities& facilities, ExecutionController& controller)
    : facilities(&facilities), stateLock(Mutex::Recursive), engineListLock(Mutex::Normal), facade(*this),
      debugger(*this), controller(&controller), suspendEverything(false), suspendedEntity(invalidEntity),
      stepOutContext(nullptr), stepOverContext(nullptr)
{
    registerEngine(facilities.getStringTable().add(debugger.getPath(), &facilities.getLogger()), debugger);
}

// The bottom frame of a stack is the MainContext that registration pushed and the framework owns; the
// frames above belong to their engines.
InspectionFrameworkImpl::~InspectionFrameworkImpl()
{
    for (auto& entry : entities.getStacks()) {
        if (!entry.second.empty()) {
            TOV_DELETE(entry.second.front());
        }
    }
}

Facilities& InspectionFrameworkImpl::getFacilities() const
{
    return *facilities;
}

bool InspectionFrameworkImpl::hasEngine(unsigned long long hash) const
{
    ScopedMutex state(stateLock);
    return engines.has(hash);
}

AbstractEngine* InspectionFrameworkImpl::findEngine(unsigned long long hash, const char* path) const
{
    ScopedMutex state(stateLock);
    return findEngineLocked(hash, path);
}

AbstractEngine* InspectionFrameworkImpl::findEngineLocked(unsigned long long hash, const char* path) const
{
    AbstractEngine* const* found = engines.find(hash);
    if (found == nullptr || std::strcmp((*found)->getPath(), path) != 0) {
        return nullptr;
    }
    return *found;
}

void InspectionFrameworkImpl::registerEngine(unsigned long long hash, AbstractEngine& engine)
{
    ScopedMutex list(engineListLock);
    ScopedMutex state(stateLock);
    TOV_ASSERT(!engines.has(hash), "There is already a registered engine having path '"
                                       << facilities->getStringTable().retrieve(hash, "unknown") << "'.");
    engine.setDebuggerFacade(facade);
    engines.insert(hash, &engine);
}

void InspectionFrameworkImpl::unregisterEngine(unsigned long long hash, const char* path)
{
    ScopedMutex list(engineListLock);
    ScopedMutex state(stateLock);
    AbstractEngine* engine = findEngineLocked(hash, path);
    TOV_ASSERT(engine != nullptr, "No registered engine having path '" << path << "'.");
    if (engine == nullptr) {
        return;
    }
    engine->disable();
    // The table never forgets a key, so it is built again without this one, in the same order.
    HashTable<AbstractEngine*> kept;
    for (const HashTable<AbstractEngine*>::Entry& entry : engines) {
        if (entry.key != hash) {
            kept.insert(entry.key, entry.value);
        }
    }
    engines = std::move(kept);
}

bool InspectionFrameworkImpl::enableEngine(unsigned long long hash, const char* path)
{
    ScopedMutex state(stateLock);
    AbstractEngine* engine = findEngineLocked(hash, path);
    if (engine == nullptr) {
        return false;
    }
    engine->enable();
    return true;
}

bool InspectionFrameworkImpl::disableEngine(unsigned long long hash, const char* path)
{
    ScopedMutex state(stateLock);
    AbstractEngine* engine = findEngineLocked(hash, path);
    if (engine == nullptr) {
        return false;
    }
    engine->disable();
    return true;
}

bool InspectionFrameworkImpl::isEngineEnabled(unsigned long long hash, const char* path, bool& enabled) const
{
    ScopedMutex state(stateLock);
    const AbstractEngine* engine = findEngineLocked(hash, path);
    if (engine == nullptr) {
        return false;
    }
    enabled = engine->isEnabled();
    return true;
}

// Only the engine list lock: resource calls on the same engines may run meanwhile (engines that care
// lock for themselves).
void InspectionFrameworkImpl::enableAllEngines()
{
    ScopedMutex list(engineListLock);
    for (HashTable<AbstractEngine*>::Entry& entry : engines) {
        entry.value->enable();
    }
}

void InspectionFrameworkImpl::disableAllEngines()
{
    ScopedMutex list(engineListLock);
    for (HashTable<AbstractEngine*>::Entry& entry : engines) {
        entry.value->disable();
    }
}

bool InspectionFrameworkImpl::describeEngines(AbstractObjectBuilder& builder) const
{
    Vector<const AbstractEngine*> sorted;
    {
        ScopedMutex list(engineListLock);
        ScopedMutex state(stateLock);
        for (const HashTable<AbstractEngine*>::Entry& entry : engines) {
            sorted.push_back(entry.value);
        }
    }
    std::sort(sorted.begin(), sorted.end(), [](const AbstractEngine* left, const AbstractEngine* right) {
        return std::strcmp(left->getPath(), right->getPath()) < 0;
    });
    bool written = builder.begin() && builder.beginArray();
    for (const AbstractEngine* engine : sorted) {
        written = written && builder.arrayChild() && builder.beginObject() && builder.objectChild("path") &&
                  builder.string(engine->getPath()) && builder.objectChild("enabled") &&
                  builder.boolean(engine->isEnabled()) && builder.endObject();
    }
    return written && builder.endArray() && builder.end();
}

// An engine's path matches a request segment by segment, each pair over the shorter of the two (see
// PathSegment::sharesPrefix): clients rely on short forms such as "deb".
AbstractEngine* InspectionFrameworkImpl::route(const char* path, unsigned int length, unsigned int& offset) const
{
    for (const HashTable<AbstractEngine*>::Entry& entry : engines) {
        const char* enginePath = entry.value->getPath();
        const unsigned int engineLength = static_cast<unsigned int>(std::strlen(enginePath));
        unsigned int engineOffset = 0;
        unsigned int requestOffset = 0;
        for (;;) {
            PathSegment engineSegment;
            if (!engineSegment.take(enginePath + engineOffset, engineLength - engineOffset)) {
                break;
            }
            if (engineSegment.length == 0) {
                offset = requestOffset;
                return entry.value;
            }
            PathSegment requestSegment;
            if (!requestSegment.take(path + requestOffset, length - requestOffset) ||
                !engineSegment.sharesPrefix(requestSegment)) {
                break;
            }
            // Each `rest` counts from the running offset, so it is added. Taken as absolute, it would move
            // an engine path of two segments back and forth between its segments for ever.
            requestOffset += requestSegment.rest;
            engineOffset += engineSegment.rest;
        }
    }
    return nullptr;
}

// The state lock is held for the whole of the engine's call.
template <typename Call>
resources::Status InspectionFrameworkImpl::routeCall(const char* path, unsigned int length, Call call) const
{
    ScopedMutex state(stateLock);
    unsigned int offset = 0;
    AbstractEngine* engine = route(path, length, offset);
    if (engine == nullptr) {
        return resources::NotFound;
    }
    return call(*engine, path + offset, length - offset);
}

resources::Status InspectionFrameworkImpl::retrieveResource(const char* path, unsigned int length,
                                                            const DynamicObject* query,
                                                            AbstractObjectBuilder& builder) const
{
    return routeCall(path, length, [&](const AbstractEngine& engine, const char* rest, unsigned int restLength) {
        return engine.retrieveResource(rest, restLength, query, builder);
    });
}

resources::Status InspectionFrameworkImpl::createResource(const char* path, unsigned int length,
                                                          const DynamicObject* query, AbstractObjectBuilder& builder)
{
    return routeCall(path, length, [&](AbstractEngine& engine, const char* rest, unsigned int restLength) {
        return engine.createResource(rest, restLength, query, builder);
    });
}

resources::Status InspectionFrameworkImpl::deleteResource(const char* path, unsigned int length,
                                                          const DynamicObject* query, AbstractObjectBuilder& builder)
{
    return routeCall(path, length, [&](AbstractEngine& engine, const char* rest, unsigned int restLength) {
        return engine.deleteResource(rest, restLength, query, builder);
    });
}

void InspectionFrameworkImpl::onInitialization(unsigned int) {}

void InspectionFrameworkImpl::onTermination(unsigned int) {}

// The store takes no lock: it runs on the stopping thread while a command may hold the state lock.
// QUIRK(steps-need-suspension-listener): the stopped entity is learnt only here, from a subscription
// the framework listens to; with no TargetSuspendRequest subscribed, a stop reached by suspend leaves
// the steps acting as resume. Hosts subscribe one listener, as tov-demo does.
void InspectionFrameworkImpl::onSuspension(unsigned int, unsigned int entity)
{
    suspendedEntity.store(entity, std::memory_order_relaxed);
}

void InspectionFrameworkImpl::onDisconnection(unsigned int) {}

void InspectionFrameworkImpl::onRegistration(unsigned int, unsigned int) {}

void InspectionFrameworkImpl::onUnregistration(unsigned int, unsigned int) {}

void InspectionFrameworkImpl::onBreakpoint(unsigned int, unsigned int entity, const Uri&)
{
    suspendedEntity.store(entity, std::memory_order_relaxed);
}

RequestRegistry& InspectionFrameworkImpl::getRegistry()
{
    return requests;
}

EngineDebuggerFacade& InspectionFrameworkImpl::getFacade()
{
    return facade;
}

DebuggerFramework& InspectionFrameworkImpl::getDebugger()
{
    return debugger;
}

const DebuggerFramework& InspectionFrameworkImpl::getDebugger() const
{
    return debugger;
}

ExecutionController& InspectionFrameworkImpl::getExecutionController() const
{
    return *controller;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
