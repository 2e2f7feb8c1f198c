#include <tov/utils/debugger/BreakpointRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>
#include <tov/utils/debugger/EntitiesFilter.h>
#include <tov/utils/debugger/HitCountFilter.h>
#include <tov/utils/debugger/LocationFilter.h>

namespace tov {
namespace utils {
namespace debugger {

namespace {

enum FilterKind : unsigned char { otherKind, entitiesKind, locationKind, hitCountKind };

FilterKind kindOf(const AbstractEventFilter& filter)
{
    const Uuid& id = filter.getTypeId();
    if (id == LocationFilter::getClassTypeId()) {
        return locationKind;
    }
    if (id == EntitiesFilter::getClassTypeId()) {
        return entitiesKind;
    }
    return id == HitCountFilter::getClassTypeId() ? hitCountKind : otherKind;
}

// One pass against all three kinds of filter at once: entities combine by OR, locations and hit counts
// by AND, and a kind that the request lacks restricts nothing. A filter of another kind has no effect.
// The location is referred to, not copied: the judgement lives inside one call.
class PassJudgement {
public:
    PassJudgement(unsigned int entity, const Uri& location) : entity(entity), location(location) {}

    void take(FilterKind kind, const AbstractEventFilter& filter)
    {
        switch (kind) {
        case entitiesKind:
            hasEntities = true;
            entitiesValid = entitiesValid || static_cast<const EntitiesFilter&>(filter)(entity);
            break;
        case locationKind:
            hasLocation = true;
            locationValid = locationValid && static_cast<const LocationFilter&>(filter)(location);
            break;
        case hitCountKind:
            hasHitCount = true;
            hitCountValid = hitCountValid && static_cast<const HitCountFilter&>(filter)();
            break;
        case otherKind:
            break;
        }
    }

    // The hit count is left out on purpose: it tells whether the request is a candidate at all.
    bool isValid() const { return (!hasEntities || entitiesValid) && (!hasLocation || locationValid); }
    bool isHit() const { return isValid() && (!hasHitCount || hitCountValid); }

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
    kinds.push_back(kindOf(*filter));
    if (kinds.back() == locationKind && !hasLocation) {
        hasLocation = true;
        firstLocationDigest = digestOf(static_cast<const LocationFilter*>(filter)->getLocation());
    }
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

template <typename Judgement>
Judgement BreakpointRequest::judge(unsigned int entity, const Uri& location) const
{
    Judgement judgement(entity, location);
    for (size_t index = 0; index < filters.size(); ++index) {
        judgement.take(static_cast<FilterKind>(kinds[index]), *filters[index]);
    }
    return judgement;
}

bool BreakpointRequest::canHit(unsigned int entity, const Uri& location) const
{
    return judge<PassJudgement>(entity, location).isValid();
}

bool BreakpointRequest::refusesLocation(unsigned long long locationDigest) const
{
    return hasLocation && locationDigest != firstLocationDigest;
}

unsigned long long BreakpointRequest::digestOf(const Uri& location)
{
    return StringTable::computeHash(location.getRawString(), location.getRawStringLength(), 0);
}

bool BreakpointRequest::isHit(unsigned int entity, const Uri& location) const
{
    return judge<PassJudgement>(entity, location).isHit();
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
