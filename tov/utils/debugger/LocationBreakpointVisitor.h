#pragma once
// LocationBreakpointVisitor: the breakpoint visitor a host fires where one of its entities passes a
// location. Each breakpoint that may hit there counts the pass; those that hit are notified, and the
// visitor tells whether any did. `fire` does the whole pass, suspending the simulation on a hit.
//   LocationBreakpointVisitor at(agent, location);  facade.accept(at);
//   if (at.isHit()) inspector.getDebugger().getExecutionController().suspend();
//   // or, the same in one line:  LocationBreakpointVisitor::fire(facade, agent, location);

#include <tov/utils/Export.h>
#include <tov/utils/debugger/BreakpointRequestVisitor.h>

#include <optional>

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

    // `visitor` itself when its class is exactly this one, else null: a subclass may visit otherwise.
    static const LocationBreakpointVisitor* asExactly(const AbstractEventRequestVisitor& visitor);
    // Whether visiting `request` would do nothing: it is no breakpoint, or its entities and location
    // filters refuse the pass. Only the library's own filters are read and nothing is changed, so a
    // registry may ask while it holds its lock and spare the walk a step outside it.
    bool passesOver(const AbstractEventRequest& request) const;

    // Visits every request of the facade and, on a hit, suspends the simulation through the inspection
    // framework's execution controller. Returns whether a breakpoint hit.
    static bool fire(EngineDebuggerFacade& facade, unsigned int entity, const Uri& location);

private:
    bool hit = false;
    // BreakpointRequest::digestOf the location, worked out at the first request passed over: a firing
    // that finds nobody subscribed pays nothing for it.
    mutable std::optional<unsigned long long> locationDigest;
};

} // namespace debugger
} // namespace utils
} // namespace tov
