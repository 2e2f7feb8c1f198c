#pragma once
// BreakpointRequest: asks to be told when an entity passes a location, narrowed by any number of
// entities, location and hit count filters. Without filters it hits everywhere, for every entity.
//   if (request.canHit(entity, here)) { if (request.isHit(entity, here)) request.notify(entity, here);
//                                       request.update(); }   // what a breakpoint visitor does

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {

class Uri;

namespace debugger {

class TOV_UTILS_API BreakpointRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit BreakpointRequest(unsigned int handle);
    ~BreakpointRequest() override;

    // Keeps any non-null filter, also of a class that no breakpoint judges (it then has no effect).
    bool addFilter(AbstractEventFilter* filter) override;
    // Every filter counts one more pass, in order.
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Whether the entities and location filters let the event pass; the hit count plays no part, so
    // that a visitor can count the passes of every candidate.
    bool canHit(unsigned int entity, const Uri& location) const;
    // A quick answer for a visitor that passes over requests: true when the first location filter
    // refuses a location whose digestOf is `locationDigest`, so that canHit would be false. False tells
    // nothing. Comparing digests spares comparing the texts of every breakpoint on every pass.
    bool refusesLocation(unsigned long long locationDigest) const;
    // A hash of the location's text: equal locations have equal digests.
    static unsigned long long digestOf(const Uri& location);
    // The same, and the hit count filters too.
    bool isHit(unsigned int entity, const Uri& location) const;
    // Tells every listener onBreakpoint.
    void notify(unsigned int entity, const Uri& location);
    // The filters stay the request's.
    const Vector<AbstractEventFilter*> getFilters() const;

private:
    // Judges one pass against the filters by the kinds noted when they came.
    template <typename Judgement>
    Judgement judge(unsigned int entity, const Uri& location) const;

    Vector<AbstractEventFilter*> filters;
    // The kind of each filter, by its type id, read once in addFilter: a breakpoint is judged on every
    // pass of every location, and comparing type ids through a visitor each time was most of its cost.
    Vector<unsigned char> kinds;
    bool hasLocation = false;
    // The digestOf the first location filter's location.
    unsigned long long firstLocationDigest = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
