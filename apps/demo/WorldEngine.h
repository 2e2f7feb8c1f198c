#pragma once
// WorldEngine: the engine at "world". It serves the world's state as a resource tree
// (GET /api/world, /api/world/agents/3, /api/world/agents/3/energy, /api/world/agents?first=2&count=3)
// and is the engine whose agents the
// debugger lists: the simulation pushes and pops their frames through the facade it keeps.
//   WorldEngine engine(world);  inspector.registerEngine(engine);  engine.getFacade()->pushContext(...)

#include "World.h"

#include <tov/utils/debugger/All.h>

namespace demo {

class WorldEngine : public tov::utils::debugger::AbstractEngine {
public:
    explicit WorldEngine(const World& world) : AbstractEngine("world", true), world(world) {}

    void setDebuggerFacade(tov::utils::debugger::EngineDebuggerFacade& given) override
    {
        AbstractEngine::setDebuggerFacade(given);
        facade = &given;
    }
    // Null until the engine is registered.
    tov::utils::debugger::EngineDebuggerFacade* getFacade() const { return facade; }

    // Reads only the world's published copy, never waiting on the simulation: the server has one worker.
    tov::utils::debugger::resources::Status retrieveResource(const char* path, unsigned int length,
                                                             const tov::utils::DynamicObject* query,
                                                             tov::utils::AbstractObjectBuilder& builder) const override;

private:
    const World& world;
    tov::utils::debugger::EngineDebuggerFacade* facade = nullptr;
};

} // namespace demo
