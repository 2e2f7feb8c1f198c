#include <tov/utils/debugger/AbstractEngine.h>

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

// Entities reach the debugger through the facade. Until the debugger's EngineDebuggerFacade joins the
// library no facade can be handed out, so these two have nobody to tell yet; once it exists they forward
// to its onEntitiesRegistration and onEntitiesUnregistration with this engine first, when a facade is set.
void AbstractEngine::onEntitiesRegistration(const unsigned int*, unsigned int) {}

void AbstractEngine::onEntitiesUnregistration(const unsigned int*, unsigned int) {}

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
