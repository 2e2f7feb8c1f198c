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
    // `builder`; false when no property lies there.
    bool serve(const char* path, unsigned int length, tov::utils::AbstractObjectBuilder& builder) const;

    // Writes <prefix>.json and <prefix>.txt (the saved text form); false, with the reason in the logger,
    // when either file cannot be written.
    bool save(const std::string& prefix, tov::utils::AbstractLogger* logger) const;

    // Reads a file written by save, in either form (told apart by its first character), into `out`.
    static bool load(const char* fileName, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger);
    // The seed a loaded world was run with and the tick it reached; each stays as it is when absent.
    static void readSeed(const tov::utils::DynamicObject& world, unsigned int& seed);
    static void readTick(const tov::utils::DynamicObject& world, long long& tick);
    // The agents described by a loaded world, with their random streams where they were saved (the
    // manager's streams otherwise, so seed it first). Empty when the world has no agents.
    static std::vector<Agent*> createAgents(const tov::utils::DynamicObject& world, tov::utils::AbstractLogger* logger);

    // The resource path "/agents/3/x" as the property path "agents[3].x", by the kinds met on the way;
    // empty when a segment is missing.
    static std::string toPropertyPath(const tov::utils::DynamicObject& object, const char* path, unsigned int length);

private:
    mutable std::mutex mutex;
    tov::utils::DynamicObject state;
};

} // namespace demo
