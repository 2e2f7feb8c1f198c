#pragma once
// World: the demo's state as one property tree, {"seed":..,"tick":..,"agents":[{..},..]}, which the
// "world" engine serves, which is saved on exit as JSON and as saved text, and from which a run can start.
// The simulation's threads publish into it and the inspector's thread reads it, under one lock.
//   World world;  world.reset(seed, agents);  world.publish(agent);  world.save("tov-demo-world", logger);

#include "Agent.h"

#include <mutex>
#include <string>
#include <vector>

namespace demo {

class World {
public:
    // A fresh world description: the seed and the agents in their initial state.
    void reset(unsigned int seed, const std::vector<Agent*>& agents);
    // Writes the agent's state and the position of its random stream into agents[index].
    void publish(const Agent& agent);
    void setTick(long long tick);

    // The subtree under a resource path such as "/agents/3" or "/seed" ("" is everything), walked into
    // `builder`; false when no property lies there. Of an array, only the elements from `first` on, at
    // most `count` of them.
    bool serve(const char* path, unsigned int length, tov::utils::AbstractObjectBuilder& builder,
               unsigned int first = 0, unsigned int count = 0xFFFFFFFFu) const;

    // Writes <prefix>.json and <prefix>.txt (the saved text form); false, with the reason in the logger,
    // when either file cannot be written.
    [[nodiscard]] bool save(const std::string& prefix, tov::utils::AbstractLogger* logger) const;

    // Reads a file written by save, in either form (told apart by its first character), into `out`.
    // False with the reason ("it is neither JSON nor saved text", ...).
    static bool load(const char* fileName, tov::utils::DynamicObject& out, std::string& reason);
    // The seed a loaded world was run with (kept as it is when absent) and the tick it reached (0 when
    // absent), and its agents, with their random streams where they were saved (the manager's streams
    // otherwise, so seed it first), appended to `agents`. False, with none appended and the reason ("'agents' is a string, not an
    // array"), for a world that does not describe a run.
    static bool read(const tov::utils::DynamicObject& world, unsigned int& seed, long long& tick,
                     std::vector<Agent*>& agents, std::string& reason);

    // The resource path "/agents/3/x" as the property path "agents[3].x", by the kinds met on the way;
    // empty when a segment is missing.
    static std::string toPropertyPath(const tov::utils::DynamicObject& object, const char* path, unsigned int length);

private:
    mutable std::mutex mutex;
    tov::utils::DynamicObject state;
};

} // namespace demo
