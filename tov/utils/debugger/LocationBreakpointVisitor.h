#pragma once
// LocationBreakpointVisitor: the breakpoint visitor a host fires where one of its entities passes a
// location. Each breakpoint that may hit there counts the pass; those that hit are notified, and the
// visitor tells whether any did. `fire` does the whole pass, suspending the simulation on a hit.
//   LocationBreakpointVisitor at(agent, location);  facade.accept(at);
//   if (at.isHit()) inspector.getDebugger().getExecutionController().suspend();
//   // or, the same in one line:  LocationBreakpointVisitor::fire(facade, agent, location);

#include <tov/utils/Export.h>
#include <tov/utils/debugger/BreakpointRequestVisitor.h>

namespace tov {
namespace utils {

class Uri;

namespace debugger {

class EngineDebuggerFacade;

class TOV_UTILS_API LocationBreakpointVisitor : public BreakpointRequestVisitor {
public:
    // The location is not copied: it must outlive the visitor.
    LocationBreakpointVisitor(unsigned int entity, const Uri& location);
    ~LocationBreakpointVisitor() override;

    using BreakpointRequestVisitor::visit;
    // canHit, then for a candidate isHit (and notify on a hit) and update, so that hit counts count
    // every pass of a candidate.
    void visit(BreakpointRequest& request) override;

    // Whether a breakpoint hit during the visits so far.
    bool isHit() const;

    // Visits every request of the facade and, on a hit, suspends the simulation through the inspection
    // framework's execution controller. Returns whether a breakpoint hit.
    static bool fire(EngineDebuggerFacade& facade, unsigned int entity, const Uri& location);

private:
    bool hit = false;
};

} // namespace debugger
} // namespace utils
} // namespace tov
