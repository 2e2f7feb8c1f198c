// What an engine pays for telling the debugger about every frame while nobody looks: pushContext then
// popContext with nothing armed, for 1, 100 and 10,000 registered entities, against what a user would
// write instead, a map from entity to a stack of frames under a std::mutex. Both sides hand over a frame
// that the engine keeps, so that neither side's figure holds an allocation of the host's.
// The aim is a pair in at most 60 ns whatever the number of entities; the plain map, which stops nothing
// and tells nobody, shows the floor. Names read "<comparison>|<side>/<entities>"; "tov" is this library.
#include <tov/utils/Facilities.h>
#include <tov/utils/System.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractContext.h>
#include <tov/utils/debugger/AbstractContextFactory.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/EngineDebuggerFacade.h>
#include <tov/utils/debugger/InspectionFramework.h>

#include <benchmark/benchmark.h>

#include <mutex>
#include <numeric>
#include <unordered_map>
#include <vector>

using namespace tov::utils;
using namespace tov::utils::debugger;

namespace {

class Frame : public AbstractContext {
public:
    Frame() : location(Uri::create("tov:agents/forager.behavior#seek")) {}
    const Uri& getLocation() const override { return location; }
    void invalidate() override {}
    void accept(AbstractContextVisitor&) const override {}

private:
    Uri location;
};

class KeptFrame : public AbstractContextFactory {
public:
    AbstractContext* create() override { return &frame; }

private:
    Frame frame;
};

class Simulation : public AbstractEngine {
public:
    Simulation() : AbstractEngine("simulation", true) {}
    void setDebuggerFacade(EngineDebuggerFacade& given) override
    {
        AbstractEngine::setDebuggerFacade(given);
        facade = &given;
    }
    EngineDebuggerFacade* facade = nullptr;
};

void pushPopTov(benchmark::State& state)
{
    if (!initialize(nullptr)) {
        state.SkipWithError("the library did not initialize");
        return;
    }
    {
        InspectionFramework& framework = Facilities::instance().getInspectionFramework();
        Simulation simulation;
        if (!framework.registerEngine(simulation)) {
            state.SkipWithError("the engine was refused");
        }
        std::vector<unsigned int> entities(static_cast<std::size_t>(state.range(0)));
        std::iota(entities.begin(), entities.end(), 0u);
        simulation.onEntitiesRegistration(entities.data(), static_cast<unsigned int>(entities.size()));
        KeptFrame factory;
        const unsigned int entity = entities[entities.size() / 2];
        for (auto _ : state) {
            simulation.facade->pushContext(simulation, entity, factory);
            benchmark::DoNotOptimize(simulation.facade->popContext(simulation, entity));
        }
        simulation.onEntitiesUnregistration(entities.data(), static_cast<unsigned int>(entities.size()));
        framework.unregisterEngine(simulation.getPath());
    }
    state.counters["budget"] = 60;
    terminate(nullptr);
}

// The stacks a host would keep itself, with the one test of an armed stop that the debugger also makes.
struct PlainStacks {
    std::mutex mutex;
    std::unordered_map<unsigned int, std::vector<AbstractContext*>> stacks;
    bool armed = false;

    void push(unsigned int entity, AbstractContext* frame)
    {
        std::lock_guard<std::mutex> guard(mutex);
        stacks[entity].push_back(frame);
        benchmark::DoNotOptimize(armed);
    }
    AbstractContext* pop(unsigned int entity)
    {
        std::lock_guard<std::mutex> guard(mutex);
        std::vector<AbstractContext*>& stack = stacks[entity];
        AbstractContext* top = stack.back();
        stack.pop_back();
        benchmark::DoNotOptimize(armed);
        return top;
    }
};

void pushPopStd(benchmark::State& state)
{
    PlainStacks plain;
    for (unsigned int entity = 0; entity < state.range(0); ++entity) {
        plain.stacks[entity].reserve(8);
    }
    Frame frame;
    const unsigned int entity = static_cast<unsigned int>(state.range(0) / 2);
    for (auto _ : state) {
        plain.push(entity, &frame);
        benchmark::DoNotOptimize(plain.pop(entity));
    }
}

} // namespace

BENCHMARK(pushPopTov)->Name("push and pop|tov")->Arg(1)->Arg(100)->Arg(10000);
BENCHMARK(pushPopStd)->Name("push and pop|std")->Arg(1)->Arg(100)->Arg(10000);

BENCHMARK_MAIN();
