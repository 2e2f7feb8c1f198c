#pragma once
// RequestRegistry: owns the event requests of one debugger. It hands out handles, never reused, builds a
// request with its listeners and filters in one step, removes it by handle, and offers a fired event to
// every request without holding its lock while listeners run.
//   AbstractEventListener* listeners[] = {&printer};
//   unsigned int handle = registry.subscribe<EntityRegistrationRequest>(listeners, 1, nullptr, 0);
//   registry.accept(registrationVisitor);   ...   registry.unsubscribe(handle);

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/debugger/RequestIterator.h>

namespace tov {
namespace utils {

class Uuid;

namespace debugger {

class AbstractEventFilter;
class AbstractEventListener;
class AbstractEventRequest;
class AbstractEventRequestVisitor;
class LocationBreakpointVisitor;

class TOV_UTILS_API RequestRegistry {
public:
    RequestRegistry();
    // Tells every TerminationRequest subscriber, once, then destroys every request. Iterators that
    // were not given back stay alive.
    virtual ~RequestRegistry();
    RequestRegistry(const RequestRegistry&) = delete;
    RequestRegistry& operator=(const RequestRegistry&) = delete;

    // Makes a `Request` with the next handle, gives it the listeners (not owned, none may be null) and
    // the filters (owned from here on, also those that the request refuses; none may be null), and
    // returns its handle. 0, with nothing built, when `Request` is not registered as an
    // AbstractEventRequest with the type manager of the Facilities. An InitializationRequest tells its
    // listeners at once, before this returns.
    template <typename Request>
    [[nodiscard]] unsigned int subscribe(AbstractEventListener* const* listeners, unsigned int listenerCount,
                                         AbstractEventFilter* const* filters, unsigned int filterCount);
    // Destroys the request with its filters; false for an unknown handle (0 among them). A request that
    // a firing is visiting at that moment is destroyed once that firing has left it.
    bool unsubscribe(unsigned int handle);
    void unsubscribeAll();

    // Offers `visitor` to every request, walking with an iterator of its own; the lock is not held while
    // the visitor runs, so listeners may subscribe, unsubscribe and fire again.
    void accept(AbstractEventRequestVisitor& visitor);

    // A walk over the requests, to be given back to destroyIterator.
    [[nodiscard]] RequestIterator* createIterator();
    // Only for a pointer that createIterator returned; an unknown one is ignored.
    void destroyIterator(RequestIterator* iterator);

private:
    bool isRequestClass(const Uuid& id) const;
    unsigned int doSubscribe(AbstractEventRequest* request, AbstractEventListener* const* listeners,
                             unsigned int listenerCount, AbstractEventFilter* const* filters, unsigned int filterCount);
    // The caller holds `mutex`.
    void destroyRequest(AbstractEventRequest* request);
    bool isInHand(const AbstractEventRequest* request) const;
    // The walk of a firing, or null when there is nothing to walk.
    RequestIterator* takeFiringWalk();
    // The walk's next request that `visitor` must be offered: with a location breakpoint, those whose
    // filters refuse it are passed over.
    AbstractEventRequest* nextToVisit(RequestIterator& walk, const LocationBreakpointVisitor* breakpoint);
    void destroyRetiredRequests();

    // Recursive because listeners call back.
    Mutex mutex;
    unsigned int nextHandle;
    // Owned, in order of subscription.
    Vector<AbstractEventRequest*> requests;
    Vector<RequestIterator*> iterators;
    // Initialization requests telling their listeners at subscription, innermost last.
    Vector<AbstractEventRequest*> inHand;
    // Unsubscribed while a walk or an initialization was telling them; destroyed once nothing holds them.
    Vector<AbstractEventRequest*> retired;
    // The walk of accept, kept from one firing to the next so that a firing allocates nothing; a firing
    // inside a listener's firing, while it is in use, makes one of its own.
    RequestIterator firingWalk;
    bool firingWalkInUse;
};

} // namespace debugger
} // namespace utils
} // namespace tov

#include <tov/utils/debugger/RequestRegistry.inl>
