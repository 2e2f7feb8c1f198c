#include "WorldEngine.h"

namespace demo {

tov::utils::debugger::resources::Status WorldEngine::retrieveResource(const char* path, unsigned int length,
                                                                      const tov::utils::DynamicObject*,
                                                                      tov::utils::AbstractObjectBuilder& builder) const
{
    return world.serve(path, length, builder) ? tov::utils::debugger::resources::Ok
                                              : tov::utils::debugger::resources::NotFound;
}

} // namespace demo
