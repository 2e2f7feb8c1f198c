#include <tov/utils/debugger/LocationBreakpointVisitor.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/debugger/BreakpointRequest.h>
#include <tov/utils/debugger/DebuggerFramework.h>
#include <tov/utils/debugger/EngineDebuggerFacade.h>
#include <tov/utils/debugger/ExecutionController.h>
#include <tov/utils/debugger/InspectionFramework.h>

#include <typeinfo>

namespace tov {
namespace utils {
namespace debugger {

LocationBreakpointVisitor::LocationBreakpointVisitor(unsigned int entity, const Uri& location)
    : BreakpointRequestVisitor(entity, &location)
{
}

LocationBreakpointVisitor::~LocationBreakpointVisitor() = default;

void LocationBreakpointVisitor::visit(BreakpointRequest& request)
{
    const Uri& location = *getLocation();
    if (!request.canHit(getEntity(), location)) {
        return;
    }
    if (request.isHit(getEntity(), location)) {
        request.notify(getEntity(), location);
        hit = true;
    }
    // After isHit: a hit count filter answers for the pass being counted.
    request.update();
}

bool LocationBreakpointVisitor::isHit() const
{
    return hit;
}

const LocationBreakpointVisitor* LocationBreakpointVisitor::asExactly(const AbstractEventRequestVisitor& visitor)
{
    return typeid(visitor) == typeid(LocationBreakpointVisitor)
               ? static_cast<const LocationBreakpointVisitor*>(&visitor)
               : nullptr;
}

bool LocationBreakpointVisitor::passesOver(const AbstractEventRequest& request) const
{
    // The same object is the usual answer, and spares comparing the ids.
    const Uuid& type = request.getTypeId();
    if (&type != &BreakpointRequest::getClassTypeId() && type != BreakpointRequest::getClassTypeId()) {
        return true;
    }
    const BreakpointRequest& breakpoint = static_cast<const BreakpointRequest&>(request);
    if (!locationDigest.has_value()) {
        locationDigest = BreakpointRequest::digestOf(*getLocation());
    }
    return breakpoint.refusesLocation(*locationDigest) || !breakpoint.canHit(getEntity(), *getLocation());
}

bool LocationBreakpointVisitor::fire(EngineDebuggerFacade& facade, unsigned int entity, const Uri& location)
{
    LocationBreakpointVisitor visitor(entity, location);
    facade.accept(visitor);
    // QUIRK(breakpoint-without-suspension-event): a hit stops the thread at once, without telling the
    // suspension subscribers (the breakpoint event was the news); a step's stop tells them.
    if (visitor.isHit()) {
        Facilities::instance().getInspectionFramework().getDebugger().getExecutionController().suspend();
    }
    return visitor.isHit();
}

} // namespace debugger
} // namespace utils
} // namespace tov
