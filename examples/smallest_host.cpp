// The smallest host: one engine whose single entity enters a frame each round, served over HTTP.
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <tov/utils/All.h>
#include <tov/utils/debugger/All.h>
using namespace tov::utils;
using namespace tov::utils::debugger;

struct Frame : AbstractContext {
    Uri at = Uri::create("tov:hello.behavior#greet");
    DynamicObject state;
    const Uri& getLocation() const override { return at; }
    void invalidate() override {}
    void accept(AbstractContextVisitor& visitor) const override { visitor.visit(state); }
};
struct Frames : AbstractContextFactory {
    AbstractContext* create() override { return TOV_NEW Frame(); }
};
struct Hello : AbstractEngine {
    Hello() : AbstractEngine("hello", true) {}
    void setDebuggerFacade(EngineDebuggerFacade& given) override
    {
        AbstractEngine::setDebuggerFacade(given);
        facade = &given;
    }
    EngineDebuggerFacade* facade = nullptr;
};

int main(int argc, char** argv)
{
    OstreamLogger log(&std::cerr, &std::cerr, nullptr, nullptr); // errors and warnings, no trace lines
    if (!initialize(&log)) return 1;
    Facilities::instance().setLogger(log); // the library's own messages go to the host's logger
    InspectionFramework& inspector = Facilities::instance().getInspectionFramework();
    Hello hello; // alive while registered
    if (!inspector.registerEngine(hello)) {
        terminate(&log);
        return 1;
    }                              // its path is taken
    const unsigned int entity = 0; // ids dense from 0
    hello.onEntitiesRegistration(&entity, 1);
    HttpSettings http;                                // this machine only; pages of other sites refused
    http.port = argc > 1 ? std::atoi(argv[1]) : 8000; // 0: any free port
    if (inspector.startHttp(http)) std::printf("open http://127.0.0.1:%u/ui/\n", inspector.getHttpPort());
    Frames frames;
    const Uri greet = Uri::create("tov:hello.behavior#greet");
    for (int round = 0; round < 3; ++round) {                          // a real host runs until told to stop
        hello.facade->pushContext(hello, entity, frames);              // a stopped entity waits here ...
        LocationBreakpointVisitor::fire(*hello.facade, entity, greet); // ... and at a breakpoint that hits
        TOV_DELETE(hello.facade->popContext(hello, entity));           // ... and here
    }
    std::printf("entity 0 is back at its bottom frame: %u\n", inspector.getDebugger().countContexts(entity));
    if (inspector.isHttpStarted()) inspector.shutdownHttp();
    hello.onEntitiesUnregistration(&entity, 1);
    inspector.unregisterEngine("hello");
    Facilities::instance().clearLogger();
    terminate(&log);
}
