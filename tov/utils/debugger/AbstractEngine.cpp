#include <tov/utils/debugger/AbstractEngine.h>

#include <tov/utils/debugger/EngineDebuggerFacade.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractEngine::AbstractEngine(const char* path, bool enabled)
    : facade(nullptr), path(path != nullptr ? path : ""), enabled(enabled), hasPath(path != nullptr)
{
}

AbstractEngine::~AbstractEngine() = default;

void AbstractEngine::setDebuggerFacade(EngineDebuggerFacade& facade)
{
    this->facade = &facade;
}

// Entities reach the debugger through the facade; an engine that no framework registered has none.
void AbstractEngine::onEntitiesRegistration(const unsigned int* ids, unsigned int count)
{
    if (facade != nullptr) {
        facade->onEntitiesRegistration(*this, ids, count);
    }
}

void AbstractEngine::onEntitiesUnregistration(const unsigned int* ids, unsigned int count)
{
    if (facade != nullptr) {
        facade->onEntitiesUnregistration(*this, ids, count);
    }
}

resources::Status AbstractEngine::retrieveResource(const char*, unsigned int, const DynamicObject*,
                                                   AbstractObjectBuilder&) const
{
    return resources::NotFound;
}

resources::Status AbstractEngine::createResource(const char*, unsigned int, const DynamicObject*,
                                                 AbstractObjectBuilder&)
{
    return resources::NotFound;
}

resources::Status AbstractEngine::deleteResource(const char*, unsigned int, const DynamicObject*,
                                                 AbstractObjectBuilder&)
{
    return resources::NotFound;
}

const char* AbstractEngine::getPath() const
{
    return hasPath ? path.c_str() : nullptr;
}

bool AbstractEngine::isEnabled() const
{
    return enabled;
}

void AbstractEngine::enable()
{
    if (!enabled) {
        doEnable(enabled);
    }
}

void AbstractEngine::disable()
{
    if (enabled) {
        doDisable(enabled);
    }
}

void AbstractEngine::doEnable(bool& enabled)
{
    enabled = true;
}

void AbstractEngine::doDisable(bool& enabled)
{
    enabled = false;
}

} // namespace debugger
} // namespace utils
} // namespace tov
