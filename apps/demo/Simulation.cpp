#include "Simulation.h"

#include <chrono>

namespace demo {

const char* const BehaviourLocations::live = "tov:agents/forager.behavior#live";
const char* const BehaviourLocations::seek = "tov:agents/forager.behavior#seek";
const char* const BehaviourLocations::move = "tov:agents/forager.behavior#move";
const char* const BehaviourLocations::eat = "tov:agents/forager.behavior#eat";

namespace {

namespace debugger = tov::utils::debugger;

} // namespace

Simulation::Simulation(World& world, WorldEngine& engine, std::vector<Agent*> agents, unsigned int workerCount,
                       unsigned int tickMilliseconds, long long firstTick, unsigned int lifespan)
    : world(world), engine(engine), agents(std::move(agents)), workers(workerCount == 0 ? 1 : workerCount),
      tickMilliseconds(tickMilliseconds), firstTick(firstTick), lifespan(lifespan),
      live_(tov::utils::Uri::create(BehaviourLocations::live)),
      seek_(tov::utils::Uri::create(BehaviourLocations::seek)),
      move_(tov::utils::Uri::create(BehaviourLocations::move)), eat_(tov::utils::Uri::create(BehaviourLocations::eat))
{
    std::vector<unsigned int> ids;
    for (const Agent* agent : this->agents) {
        ids.push_back(agent->getIndex());
    }
    if (!ids.empty()) {
        engine.onEntitiesRegistration(ids.data(), static_cast<unsigned int>(ids.size()));
        registered = true;
    }
}

Simulation::~Simulation()
{
    stop();
    for (Agent* agent : agents) {
        TOV_DELETE(agent);
    }
}

void Simulation::start()
{
    for (unsigned int w = 0; w < workers.size(); ++w) {
        workers[w].thread = std::thread([this, w] { run(w); });
    }
}

void Simulation::stop()
{
    stopping = true;
    debugger::DebuggerFramework& debug = tov::utils::Facilities::instance().getInspectionFramework().getDebugger();
    for (Worker& worker : workers) {
        // A thread let go may reach the gate again at its next push or breakpoint before it sees the
        // flag: keep opening the gate until it says it has left.
        while (worker.thread.joinable() && !worker.finished) {
            debug.resume();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        if (worker.thread.joinable()) {
            worker.thread.join();
        }
    }
    if (registered) {
        // Each worker ends between two rounds, so every stack is back at its bottom frame.
        std::vector<unsigned int> ids;
        for (const Agent* agent : agents) {
            ids.push_back(agent->getIndex());
        }
        engine.onEntitiesUnregistration(ids.data(), static_cast<unsigned int>(ids.size()));
        registered = false;
    }
}

long long Simulation::getTick() const
{
    long long tick = -1;
    for (const Worker& worker : workers) {
        const long long rounds = worker.rounds.load();
        if (tick < 0 || rounds < tick) {
            tick = rounds;
        }
    }
    return firstTick + (tick < 0 ? 0 : tick);
}

void Simulation::run(unsigned int worker)
{
    while (!stopping) {
        for (unsigned int i = worker; i < agents.size() && !stopping; i += static_cast<unsigned int>(workers.size())) {
            Agent& agent = *agents[i];
            live(agent);
            if (lifespan != 0 && agent.getAge() >= static_cast<long long>(lifespan)) {
                replaceWithNewborn(agent);
            }
            world.publish(agent);
        }
        ++workers[worker].rounds;
        world.setTick(getTick());
        std::this_thread::sleep_for(std::chrono::milliseconds(tickMilliseconds));
    }
    // The flag that stop waits for: this thread will touch the debugger no more.
    workers[worker].finished = true;
}

void Simulation::live(Agent& agent)
{
    std::vector<AgentFrame*> stack;
    push(agent, live_, stack);
    pass(agent, live_);
    push(agent, seek_, stack);
    if (!agent.hasGoal()) {
        agent.chooseGoal();
    }
    pass(agent, seek_);
    push(agent, move_, stack);
    const bool arrived = agent.moveTowardsGoal();
    refresh(agent, stack);
    pass(agent, move_);
    pop(agent, stack);
    pop(agent, stack);
    if (arrived) {
        push(agent, eat_, stack);
        agent.eat();
        refresh(agent, stack);
        pass(agent, eat_);
        pop(agent, stack);
    }
    pop(agent, stack);
    agent.growOlder();
}

void Simulation::replaceWithNewborn(Agent& agent)
{
    const unsigned int id = agent.getIndex();
    engine.onEntitiesUnregistration(&id, 1);
    agent.beReborn();
    engine.onEntitiesRegistration(&id, 1);
}

void Simulation::refresh(const Agent& agent, const std::vector<AgentFrame*>& stack)
{
    for (AgentFrame* frame : stack) {
        // Null where the debugger made no frame (an engine whose frames were invalidated).
        if (frame != nullptr) {
            frame->refresh(agent);
        }
    }
}

void Simulation::push(Agent& agent, const tov::utils::Uri& location, std::vector<AgentFrame*>& stack)
{
    AgentFrameFactory factory(location, agent);
    engine.getFacade()->pushContext(engine, agent.getIndex(), factory);
    stack.push_back(factory.getCreated());
}

void Simulation::pop(Agent& agent, std::vector<AgentFrame*>& stack)
{
    tov::utils::debugger::AbstractContext* top = engine.getFacade()->popContext(engine, agent.getIndex());
    stack.pop_back();
    TOV_DELETE(top);
}

void Simulation::pass(Agent& agent, const tov::utils::Uri& location)
{
    debugger::LocationBreakpointVisitor::fire(*engine.getFacade(), agent.getIndex(), location);
}

} // namespace demo
