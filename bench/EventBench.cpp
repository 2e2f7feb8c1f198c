// A breakpoint fired through EngineDebuggerFacade::accept, as a host's engine fires it, into the
// framework's registry, against what a user would write instead: a list of
// subscribers under a std::mutex, copied as shared pointers on every firing so that subscribers may come
// and go while it runs, each with an entity list and a location to match. Both sides hold 0 or 10
// breakpoints at other locations than the one passed, the usual case of a simulation under inspection.
// Names read "<comparison>|<side>/<subscriptions>"; the side "tov" is this library.
#include <tov/utils/Facilities.h>
#include <tov/utils/Memory.h>
#include <tov/utils/System.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/BreakpointRequest.h>
#include <tov/utils/debugger/BreakpointRequestVisitor.h>
#include <tov/utils/debugger/EngineDebuggerFacade.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/LocationBreakpointVisitor.h>
#include <tov/utils/debugger/LocationFilter.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

using namespace tov::utils;
using namespace tov::utils::debugger;

namespace {

class Silent : public AbstractEventListener {
public:
    void onInitialization(unsigned int) override {}
    void onTermination(unsigned int) override {}
    void onSuspension(unsigned int, unsigned int) override {}
    void onDisconnection(unsigned int) override {}
    void onRegistration(unsigned int, unsigned int) override {}
    void onUnregistration(unsigned int, unsigned int) override {}
    void onBreakpoint(unsigned int, unsigned int, const Uri&) override { ++hits; }
    unsigned long long hits = 0;
};

// An engine that keeps the facade the framework hands it, as a host's engine does.
class FacadeKeeper : public AbstractEngine {
public:
    FacadeKeeper() : AbstractEngine("simulation", true) {}
    void setDebuggerFacade(EngineDebuggerFacade& given) override
    {
        AbstractEngine::setDebuggerFacade(given);
        facade = &given;
    }
    EngineDebuggerFacade* facade = nullptr;
};

Uri locationNumber(int index)
{
    const std::string text = "tov:agents/forager" + std::to_string(index) + ".behavior";
    return Uri::create(text.c_str());
}

void fireTov(benchmark::State& state)
{
    if (!initialize(nullptr)) {
        state.SkipWithError("the library did not initialize");
        return;
    }
    Silent listener;
    {
        InspectionFramework& framework = Facilities::instance().getInspectionFramework();
        FacadeKeeper engine;
        if (!framework.registerEngine(engine)) {
            state.SkipWithError("the engine was refused");
        }
        for (int i = 0; i < state.range(0); ++i) {
            AbstractEventFilter* filters[] = {TOV_NEW LocationFilter(locationNumber(i + 1))};
            if (framework.subscribe<BreakpointRequest>(listener, filters, 1) == 0) {
                state.SkipWithError("a subscription was refused");
            }
        }
        const Uri here = locationNumber(0);
        for (auto _ : state) {
            LocationBreakpointVisitor firing(7, here);
            engine.facade->accept(firing);
        }
        framework.unregisterEngine(engine.getPath());
    }
    benchmark::DoNotOptimize(listener.hits);
    terminate(nullptr);
    if (state.range(0) == 10) {
        state.counters["budget"] = 150;
    }
}

struct PlainBreakpoint {
    std::vector<unsigned int> entities; // empty: any entity
    std::string location;
    std::function<void(unsigned int, const std::string&)> onHit;
};

struct PlainRegistry {
    std::mutex mutex;
    std::vector<std::shared_ptr<PlainBreakpoint>> breakpoints;

    void fire(unsigned int entity, const std::string& location)
    {
        std::vector<std::shared_ptr<PlainBreakpoint>> snapshot;
        {
            std::lock_guard<std::mutex> guard(mutex);
            snapshot = breakpoints;
        }
        for (const auto& breakpoint : snapshot) {
            const bool entityPasses = breakpoint->entities.empty() ||
                                      std::find(breakpoint->entities.begin(), breakpoint->entities.end(), entity) !=
                                          breakpoint->entities.end();
            if (entityPasses && breakpoint->location == location) {
                breakpoint->onHit(entity, location);
            }
        }
    }
};

void fireStd(benchmark::State& state)
{
    unsigned long long hits = 0;
    PlainRegistry registry;
    for (int i = 0; i < state.range(0); ++i) {
        auto breakpoint = std::make_shared<PlainBreakpoint>();
        breakpoint->location = "tov:agents/forager" + std::to_string(i + 1) + ".behavior";
        breakpoint->onHit = [&hits](unsigned int, const std::string&) { ++hits; };
        registry.breakpoints.push_back(breakpoint);
    }
    const std::string here = "tov:agents/forager0.behavior";
    for (auto _ : state) {
        registry.fire(7, here);
    }
    benchmark::DoNotOptimize(hits);
}

} // namespace

BENCHMARK(fireTov)->Name("breakpoint|tov")->Arg(0)->Arg(10);
BENCHMARK(fireStd)->Name("breakpoint|std")->Arg(0)->Arg(10);

BENCHMARK_MAIN();
