// tov-demo: a small simulation host. Foragers seek, move and eat on a few worker threads while the
// inspector serves the world and the debugger over HTTP; --tour drives that inspector through a session.

#include "Agent.h"
#include "Options.h"
#include "Simulation.h"
#include "Tour.h"
#include "World.h"
#include "WorldEngine.h"

#include <tov/utils/All.h>
#include <tov/utils/debugger/All.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <iostream>
#include <thread>

namespace {

std::atomic<bool> interrupted{false};

void onSignal(int)
{
    interrupted = true;
}

// The debugger learns which entity stopped only from the subscribers of suspensions: this one makes
// step commands after a plain suspend know their entity, and has nothing else to do.
class SuspensionListener : public tov::utils::debugger::AbstractEventListener {
public:
    void onInitialization(unsigned int) override {}
    void onTermination(unsigned int) override {}
    void onSuspension(unsigned int, unsigned int) override {}
    void onDisconnection(unsigned int) override {}
    void onRegistration(unsigned int, unsigned int) override {}
    void onUnregistration(unsigned int, unsigned int) override {}
    void onBreakpoint(unsigned int, unsigned int, const tov::utils::Uri&) override {}
};

// The one place the server starts, in its configured form: the library checks the address and the
// port (--port 0 takes a free one, which getHttpPort then tells), and web pages of other sites cannot
// drive the demo. The banner asks the inspector for the port it listens on.
bool startInspector(tov::utils::debugger::InspectionFramework& inspector, const demo::Options& options)
{
    tov::utils::debugger::HttpSettings settings;
    settings.address = options.bind.c_str();
    settings.port = options.port;
    return inspector.startHttp(settings);
}

std::string plural(unsigned long long count, const char* noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// The agents of a fresh world, or of the world loaded; false once the refusal and its reason are printed.
bool createWorld(const demo::Options& options, unsigned int& seed, long long& tick, std::vector<demo::Agent*>& agents)
{
    tov::utils::RandomManager& random = tov::utils::Facilities::instance().getRandomNumberGenerator();
    seed = options.seed;
    if (options.load.empty()) {
        random.seed(seed);
        for (unsigned int i = 0; i < options.agents; ++i) {
            agents.push_back(TOV_NEW demo::Agent(i, random.createRandomStream(i)));
        }
        return true;
    }
    tov::utils::DynamicObject loaded;
    std::string reason;
    unsigned int savedSeed = seed;
    if (!demo::World::load(options.load.c_str(), loaded, reason) ||
        !demo::World::read(loaded, savedSeed, tick, agents, reason)) {
        std::cerr << "tov-demo: cannot start from " << options.load << ": " << reason << "\n";
        return false;
    }
    // The streams saved with the agents were read above; a seed given on the command line only seeds
    // the streams of agents saved without one.
    seed = options.seedGiven ? options.seed : savedSeed;
    random.seed(seed);
    std::cout << "tov-demo: loaded tick " << tick << " from " << options.load << " (" << plural(agents.size(), "agent")
              << ", seed " << seed << ")\n";
    if (options.agentsGiven && options.agents != agents.size()) {
        std::cout << "tov-demo: --agents " << options.agents << " is overridden: " << options.load << " holds "
                  << plural(agents.size(), "agent") << "\n";
    }
    return true;
}

int run(const demo::Options& options, tov::utils::AbstractLogger& logger)
{
    if (!demo::registerAgentType(tov::utils::Facilities::instance().getTypeManager(), &logger)) {
        std::cerr << "tov-demo: the Agent type was refused\n";
        return 1;
    }
    unsigned int seed = 0;
    long long tick = 0;
    std::vector<demo::Agent*> agents;
    if (!createWorld(options, seed, tick, agents)) {
        return 1;
    }

    tov::utils::debugger::InspectionFramework& inspector = tov::utils::Facilities::instance().getInspectionFramework();
    demo::World world;
    world.reset(seed, agents);
    world.setTick(tick);
    demo::WorldEngine engine(world);
    if (!inspector.registerEngine(engine)) {
        for (demo::Agent* agent : agents) {
            TOV_DELETE(agent);
        }
        return 1;
    }
    inspector.enableEngine("debug");
    SuspensionListener suspensions;
    if (inspector.subscribe<tov::utils::debugger::TargetSuspendRequest>(suspensions) == 0) {
        std::cerr << "tov-demo: the suspension listener was refused; a step after a plain suspend will not know "
                     "its entity\n";
    }

    int status = 0;
    {
        demo::Simulation simulation(world, engine, agents, options.workers, options.tickMilliseconds, tick,
                                    options.lifespan);
        if (!startInspector(inspector, options)) {
            std::cerr << "tov-demo: the inspector cannot listen on " << options.bind << ":" << options.port
                      << " (see the reason above; --port 0 takes a free port)\n";
            status = 1;
        } else {
            const unsigned int port = inspector.getHttpPort();
            // A server on every interface answers on the loopback address too.
            const std::string address =
                options.bind == "0.0.0.0" || options.bind == "localhost" ? "127.0.0.1" : options.bind;
            const std::string url = "http://" + address + ":" + std::to_string(port);
            const std::string base = url + "/api";
            std::cout << "open " << url << "/ui/\n"
                      << "tov-demo: " << plural(simulation.countAgents(), "agent") << " on "
                      << plural(options.workers, "worker thread") << ", seed " << seed
                      << (options.lifespan == 0 ? std::string() : ", each living " + plural(options.lifespan, "round"))
                      << "\n"
                      << "inspector listening on " << url << "\n"
                      << "  the world:     curl " << base << "/world/agents/3\n"
                      << "  the entities:  curl " << base << "/debug/entities\n"
                      << "  a stack:       curl " << base << "/debug/entities/3/contexts\n"
                      << "  a breakpoint:  curl -d '{\"type\":\"breakpoint\",\"filters\":{\"location\":\""
                      << demo::BehaviourLocations::seek << "\"}}' " << base << "/events/subscriptions\n"
                      << "  resume:        curl -X POST " << base << "/debug/resume\n"
                      << "  the client:    tov-inspect --url " << url << " status\n"
                      << (options.save.empty() ? "Ctrl-C stops."
                                               : "Ctrl-C stops; the world is then saved to " + options.save +
                                                     ".json and " + options.save + ".txt.")
                      << std::endl;
            simulation.start();

            std::future<bool> tour;
            if (options.tour) {
                tour = std::async(std::launch::async, [&url, &simulation] {
                    return demo::runTour(url, simulation.countAgents(), std::cout);
                });
            }
            const auto begin = std::chrono::steady_clock::now();
            auto nextStatus = begin + std::chrono::seconds(1);
            while (!interrupted) {
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                const auto now = std::chrono::steady_clock::now();
                if (options.tour && tour.wait_for(std::chrono::seconds(0)) == std::future_status::ready) {
                    break;
                }
                if (options.seconds != 0 && now - begin >= std::chrono::seconds(options.seconds)) {
                    if (options.tour) {
                        std::cout << "tov-demo: the tour did not end within " << options.seconds << " s\n";
                        status = 1;
                    }
                    break;
                }
                if (now >= nextStatus && !options.tour) {
                    nextStatus += std::chrono::seconds(1);
                    const tov::utils::debugger::DebuggerFramework& debug = inspector.getDebugger();
                    const unsigned int stopped = debug.getSuspendedEntity();
                    std::cout << "tick " << simulation.getTick() << "  " << plural(simulation.countAgents(), "agent")
                              << "  "
                              << (debug.isSuspended() ? "suspended" + (stopped == tov::utils::debugger::invalidEntity
                                                                           ? std::string()
                                                                           : " (agent " + std::to_string(stopped) + ")")
                                                      : std::string("running"))
                              << std::endl;
                }
            }
            simulation.stop();
            if (options.tour) {
                // A tour still waiting on a stop that will not come ends at its own deadline.
                const bool passed = tour.get();
                if (status == 0 && !passed) {
                    status = 1;
                }
            }
            inspector.shutdownHttp();
            std::cout << "tov-demo: stopped at tick " << simulation.getTick() << std::endl;
        }
        world.setTick(simulation.getTick());
        for (const demo::Agent* agent : simulation.getAgents()) {
            world.publish(*agent);
        }
    }
    inspector.unsubscribeAll();
    inspector.unregisterEngine(engine.getPath());
    if (!options.save.empty()) {
        if (world.save(options.save, &logger)) {
            std::cout << "tov-demo: world saved to " << options.save << ".json and " << options.save << ".txt\n";
        } else {
            status = 1;
        }
    }
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    demo::Options options;
    const int parsed = demo::parseOptions(argc, argv, options, std::cout, std::cerr);
    if (parsed >= 0) {
        return parsed;
    }
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);

    tov::utils::OstreamLogger logger(&std::cerr, &std::cerr, nullptr, nullptr);
    if (!tov::utils::initialize(&logger)) {
        return 1;
    }
    tov::utils::Facilities::instance().setLogger(logger);
    const int status = run(options, logger);
    tov::utils::Facilities::instance().clearLogger();
    tov::utils::terminate(&logger);
    return status;
}
