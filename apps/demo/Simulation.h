#pragma once
// Simulation: the agents, run by a few worker threads. Each round an agent lives through its behaviour,
// a stack of frames at locations such as "tov:agents/forager.behavior#seek"; every frame is pushed to the
// debugger (where a stopped agent's thread waits) and every location fires a breakpoint. Agent i is
// always run by worker i % workers and draws only from its own stream, so a run repeats for a seed.
// With a lifespan, an agent that has lived that many rounds dies between two rounds and a newborn takes
// its place under the same id: the debugger sees the entity unregistered and registered again.
//   Simulation simulation(world, engine, agents, 2, 50);
//   simulation.start();  ...  simulation.stop();   // frees the agents it was given

#include "Agent.h"
#include "AgentFrame.h"
#include "World.h"
#include "WorldEngine.h"

#include <atomic>
#include <thread>
#include <vector>

namespace demo {

// The locations of the forager's behaviour, in the order it enters them.
struct BehaviourLocations {
    static const char* const live;
    static const char* const seek;
    static const char* const move;
    static const char* const eat;
};

class Simulation {
public:
    // Takes the agents (made by TOV_NEW, numbered 0..n-1) and registers them on the debugger; `engine`
    // must be registered. Ticks count on from `firstTick`, so that a loaded world goes on where it was
    // saved. A `lifespan` of 0 lets the agents live forever.
    Simulation(World& world, WorldEngine& engine, std::vector<Agent*> agents, unsigned int workers,
               unsigned int tickMilliseconds, long long firstTick = 0, unsigned int lifespan = 0);
    ~Simulation();
    Simulation(const Simulation&) = delete;
    Simulation& operator=(const Simulation&) = delete;

    void start();
    // Lets any stopped thread go, joins the workers, unregisters the entities. Safe to call twice.
    void stop();

    // The number of rounds that every agent has completed.
    long long getTick() const;
    unsigned int countAgents() const { return static_cast<unsigned int>(agents.size()); }
    // Only while stopped.
    const std::vector<Agent*>& getAgents() const { return agents; }

private:
    struct Worker {
        std::thread thread;
        std::atomic<long long> rounds{0};
        std::atomic<bool> finished{false};
    };

    void run(unsigned int worker);
    void live(Agent& agent);
    void push(Agent& agent, const tov::utils::Uri& location, std::vector<AgentFrame*>& stack);
    void pop(Agent& agent, std::vector<AgentFrame*>& stack);
    // Between two rounds, on the agent's own thread: its stack holds only its bottom frame.
    void replaceWithNewborn(Agent& agent);
    // Shows the agent's new state in every frame of its stack.
    static void refresh(const Agent& agent, const std::vector<AgentFrame*>& stack);
    // Fires a breakpoint at the location; a hit stops this thread until a resume.
    void pass(Agent& agent, const tov::utils::Uri& location);

    World& world;
    WorldEngine& engine;
    std::vector<Agent*> agents;
    std::vector<Worker> workers;
    unsigned int tickMilliseconds;
    long long firstTick;
    unsigned int lifespan;
    std::atomic<bool> stopping{false};
    bool registered = false;
    tov::utils::Uri live_;
    tov::utils::Uri seek_;
    tov::utils::Uri move_;
    tov::utils::Uri eat_;
};

} // namespace demo
