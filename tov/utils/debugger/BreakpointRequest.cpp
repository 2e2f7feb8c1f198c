#include <tov/utils/debugger/BreakpointRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEventFilterVisitor.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>
#include <tov/utils/debugger/EntitiesFilter.h>
#include <tov/utils/debugger/HitCountFilter.h>
#include <tov/utils/debugger/LocationFilter.h>

namespace tov {
namespace utils {
namespace debugger {

namespace {

// Judges one pass against all three kinds of filter at once: entities combine by OR, locations and hit
// counts by AND, and a kind that the request lacks restricts nothing. The location is referred to, not
// copied: the visitor lives inside one call, and a breakpoint fires on every pass.
class BreakpointFilterVisitor : public AbstractEventFilterVisitor {
public:
    BreakpointFilterVisitor(unsigned int entity, const Uri& location) : entity(entity), location(location) {}

    // The hit count is left out on purpose: it tells whether the request is a candidate at all.
    bool isValid() const override
    {
        return (!hasEntities || entitiesValid) && (!hasLocation || locationValid);
    }

    bool isHit() const { return isValid() && (!hasHitCount || hitCountValid); }

    bool visit(const AbstractEventFilter& filter) override
    {
        const Uuid& id = filter.getTypeId();
        if (id == EntitiesFilter::getClassTypeId()) {
            hasEntities = true;
            entitiesValid = entitiesValid || static_cast<const EntitiesFilter&>(filter)(entity);
        } else if (id == LocationFilter::getClassTypeId()) {
            hasLocation = true;
            locationValid = locationValid && static_cast<const LocationFilter&>(filter)(location);
        } else if (id == HitCountFilter::getClassTypeId()) {
            hasHitCount = true;
            hitCountValid = hitCountValid && static_cast<const HitCountFilter&>(filter)();
        } else {
            return false;
        }
        return true;
    }

private:
    const unsigned int entity;
    const Uri& location;
    bool hasEntities = false;
    bool hasLocation = false;
    bool hasHitCount = false;
    bool entitiesValid = false;
    bool locationValid = true;
    bool hitCountValid = true;
};

} // namespace

TOV_STATIC_OBJECT_DEFINE_DERIVED(BreakpointRequest, AbstractEventRequest, "tov::utils::debugger::BreakpointRequest",
                                 "33744771-C389-4914-96E8-CDCA5C59CF82")

BreakpointRequest::BreakpointRequest(unsigned int handle) : AbstractEventRequest(handle) {}

BreakpointRequest::~BreakpointRequest()
{
    for (AbstractEventFilter* filter : filters) {
        TOV_DELETE(filter);
    }
}

bool BreakpointRequest::addFilter(AbstractEventFilter* filter)
{
    if (filter == nullptr) {
        return false;
    }
    filters.push_back(filter);
    return true;
}

void BreakpointRequest::update()
{
    for (AbstractEventFilter* filter : filters) {
        filter->update();
    }
}

void BreakpointRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

bool BreakpointRequest::canHit(unsigned int entity, const Uri& location) const
{
    BreakpointFilterVisitor visitor(entity, location);
    for (const AbstractEventFilter* filter : filters) {
        filter->accept(visitor);
    }
    return visitor.isValid();
}

bool BreakpointRequest::isHit(unsigned int entity, const Uri& location) const
{
    BreakpointFilterVisitor visitor(entity, location);
    for (const AbstractEventFilter* filter : filters) {
        filter->accept(visitor);
    }
    return visitor.isHit();
}

void BreakpointRequest::notify(unsigned int entity, const Uri& location)
{
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onBreakpoint(getHandle(), entity, location);
    }
}

const Vector<AbstractEventFilter*> BreakpointRequest::getFilters() const
{
    return filters;
}

} // namespace debugger
} // namespace utils
} // namespace tov
