#include "WorldEngine.h"

namespace demo {

// ?first=N&count=M picks a window of an array (GET /api/world/agents?first=2&count=3). The query comes
// from a client: a value of the wrong kind is refused with 400, never read by an asserting getter.
tov::utils::debugger::resources::Status WorldEngine::retrieveResource(const char* path, unsigned int length,
                                                                      const tov::utils::DynamicObject* query,
                                                                      tov::utils::AbstractObjectBuilder& builder) const
{
    long long first = 0;
    long long count = 0xFFFFFFFFll;
    if (query != nullptr) {
        const tov::utils::DynamicObjectReader reader(*query);
        if ((reader.has("first") && !reader.readInt("first", first, nullptr)) ||
            (reader.has("count") && !reader.readInt("count", count, nullptr)) || first < 0 || count < 0 ||
            first > 0xFFFFFFFFll || count > 0xFFFFFFFFll) {
            return tov::utils::debugger::resources::Error;
        }
    }
    return world.serve(path, length, builder, static_cast<unsigned int>(first), static_cast<unsigned int>(count))
               ? tov::utils::debugger::resources::Ok
               : tov::utils::debugger::resources::NotFound;
}

} // namespace demo
