#include <tov/utils/debugger/impl/InspectionFrameworkImpl.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEngine.h>

#include <algorithm>
#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

InspectionFrameworkImpl::InspectionFrameworkImpl(Facilities& facilities)
    : facilities(&facilities), stateLock(Mutex::Recursive), engineListLock(Mutex::Normal)
{
    // The debugger engine ("debug") is built and registered here once DebuggerFramework joins the library.
}

// Once entities and contexts join the library, the first frame of every stack that is not empty (the
// one that registration pushed) is destroyed here, before the members.
InspectionFrameworkImpl::~InspectionFrameworkImpl() = default;

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
    // The debugger's facade is handed to the engine here (setDebuggerFacade) once it joins the library.
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

// Segments are compared over the shorter of the two lengths, so a request segment that is a prefix of
// the engine's (or the reverse, or an empty one) matches: clients rely on short forms such as "deb".
AbstractEngine* InspectionFrameworkImpl::route(const char* path, unsigned int length, unsigned int& offset) const
{
    for (const HashTable<AbstractEngine*>::Entry& entry : engines) {
        const char* enginePath = entry.value->getPath();
        const unsigned int engineLength = static_cast<unsigned int>(std::strlen(enginePath));
        unsigned int engineOffset = 0;
        unsigned int requestOffset = 0;
        for (;;) {
            unsigned int engineStart = 0;
            unsigned int engineSegment = 0;
            if (!Uri::retrieveFirstPathSegment(enginePath + engineOffset, engineLength - engineOffset, engineStart,
                                               engineSegment)) {
                break;
            }
            if (engineSegment == 0) {
                offset = requestOffset;
                return entry.value;
            }
            unsigned int requestStart = 0;
            unsigned int requestSegment = 0;
            if (!Uri::retrieveFirstPathSegment(path + requestOffset, length - requestOffset, requestStart,
                                               requestSegment)) {
                break;
            }
            if (std::strncmp(enginePath + engineOffset + engineStart, path + requestOffset + requestStart,
                             std::min(engineSegment, requestSegment)) != 0) {
                break;
            }
            // The starts are relative to the running offsets, so they are added. Taking them as absolute
            // would move an engine path of two segments back and forth between its segments for ever.
            requestOffset += requestStart + requestSegment;
            engineOffset += engineStart + engineSegment;
        }
    }
    return nullptr;
}

resources::Status InspectionFrameworkImpl::retrieveResource(const char* path, unsigned int length,
                                                            const DynamicObject* query,
                                                            AbstractObjectBuilder& builder) const
{
    ScopedMutex state(stateLock);
    unsigned int offset = 0;
    const AbstractEngine* engine = route(path, length, offset);
    if (engine == nullptr) {
        return resources::NotFound;
    }
    return engine->retrieveResource(path + offset, length - offset, query, builder);
}

resources::Status InspectionFrameworkImpl::createResource(const char* path, unsigned int length,
                                                          const DynamicObject* query, AbstractObjectBuilder& builder)
{
    ScopedMutex state(stateLock);
    unsigned int offset = 0;
    AbstractEngine* engine = route(path, length, offset);
    if (engine == nullptr) {
        return resources::NotFound;
    }
    return engine->createResource(path + offset, length - offset, query, builder);
}

resources::Status InspectionFrameworkImpl::deleteResource(const char* path, unsigned int length,
                                                          const DynamicObject* query, AbstractObjectBuilder& builder)
{
    ScopedMutex state(stateLock);
    unsigned int offset = 0;
    AbstractEngine* engine = route(path, length, offset);
    if (engine == nullptr) {
        return resources::NotFound;
    }
    return engine->deleteResource(path + offset, length - offset, query, builder);
}

// The stepping logic keeps the last suspended entity from onSuspension and onBreakpoint once it joins
// the library; the other events are of no use to the framework itself.
void InspectionFrameworkImpl::onInitialization(unsigned int) {}

void InspectionFrameworkImpl::onTermination(unsigned int) {}

void InspectionFrameworkImpl::onSuspension(unsigned int, unsigned int) {}

void InspectionFrameworkImpl::onDisconnection(unsigned int) {}

void InspectionFrameworkImpl::onRegistration(unsigned int, unsigned int) {}

void InspectionFrameworkImpl::onUnregistration(unsigned int, unsigned int) {}

void InspectionFrameworkImpl::onBreakpoint(unsigned int, unsigned int, const Uri&) {}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
