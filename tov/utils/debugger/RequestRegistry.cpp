#include <tov/utils/debugger/RequestRegistry.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/debugger/AbstractEventRequest.h>
#include <tov/utils/debugger/InitializationRequest.h>
#include <tov/utils/debugger/LocationBreakpointVisitor.h>
#include <tov/utils/debugger/RequestIterator.h>
#include <tov/utils/debugger/TerminationRequest.h>
#include <tov/utils/debugger/TerminationRequestVisitor.h>

#include <algorithm>

namespace tov {
namespace utils {
namespace debugger {

namespace {

class TerminationNotifier : public TerminationRequestVisitor {
public:
    using TerminationRequestVisitor::visit;
    void visit(TerminationRequest& request) override { request.notify(); }
};

// Gives the iterator of a firing back however the firing ends.
class IteratorGuard {
public:
    IteratorGuard(RequestRegistry& registry, RequestIterator* iterator) : registry(registry), iterator(iterator) {}
    ~IteratorGuard() { registry.destroyIterator(iterator); }
    IteratorGuard(const IteratorGuard&) = delete;
    IteratorGuard& operator=(const IteratorGuard&) = delete;

private:
    RequestRegistry& registry;
    RequestIterator* iterator;
};

} // namespace

RequestRegistry::RequestRegistry()
    : mutex(Mutex::Recursive), nextHandle(1), firingWalk(requests, mutex), firingWalkInUse(false)
{
}

RequestRegistry::~RequestRegistry()
{
    TerminationNotifier notifier;
    accept(notifier);
    unsubscribeAll();
    // A request can only stay retired if an iterator was never given back; it goes with the registry.
    for (AbstractEventRequest* request : retired) {
        TOV_DELETE(request);
    }
}

bool RequestRegistry::isRequestClass(const Uuid& id) const
{
    return Facilities::instance().getTypeManager().isDerivedFrom(id, AbstractEventRequest::getClassTypeId());
}

unsigned int RequestRegistry::doSubscribe(AbstractEventRequest* request, AbstractEventListener* const* listeners,
                                          unsigned int listenerCount, AbstractEventFilter* const* filters,
                                          unsigned int filterCount)
{
    ScopedMutex guard(mutex);
    requests.push_back(request);
    const unsigned int index = static_cast<unsigned int>(requests.size() - 1);
    for (RequestIterator* iterator : iterators) {
        iterator->onRequestAdded(index);
    }
    for (unsigned int i = 0; i < listenerCount; ++i) {
        TOV_ASSERT(listeners[i] != nullptr, i << "th given listener is NULL.");
        // Past a returning assertion the null listener is left out, since telling it would crash.
        if (listeners[i] != nullptr) {
            request->registerListener(*listeners[i]);
        }
    }
    for (unsigned int i = 0; i < filterCount; ++i) {
        TOV_ASSERT(filters[i] != nullptr, i << "th given filter is NULL.");
        request->addFilter(filters[i]);
    }
    // Read first: a listener told of the initialization may already unsubscribe the request.
    const unsigned int handle = request->getHandle();
    // The start of the debugger may lie in the past, so a subscriber is told at once, under the lock.
    // The request is in hand meanwhile, as one that a firing walks to.
    if (request->getTypeId() == InitializationRequest::getClassTypeId()) {
        inHand.push_back(request);
        static_cast<InitializationRequest*>(request)->notify();
        inHand.pop_back();
        destroyRetiredRequests();
    }
    return handle;
}

bool RequestRegistry::unsubscribe(unsigned int handle)
{
    ScopedMutex guard(mutex);
    const auto found = std::find_if(requests.begin(), requests.end(), [handle](const AbstractEventRequest* request) {
        return request->getHandle() == handle;
    });
    if (found == requests.end()) {
        return false;
    }
    const unsigned int index = static_cast<unsigned int>(found - requests.begin());
    AbstractEventRequest* request = *found;
    requests.erase(found);
    for (RequestIterator* iterator : iterators) {
        iterator->onRequestRemove(index);
    }
    destroyRequest(request);
    return true;
}

void RequestRegistry::unsubscribeAll()
{
    ScopedMutex guard(mutex);
    // A walk of its own, unknown to `iterators`: those find the list empty on their next look.
    RequestIterator walk(requests, mutex);
    while (AbstractEventRequest* request = walk.next()) {
        destroyRequest(request);
    }
    requests.clear();
}

void RequestRegistry::accept(AbstractEventRequestVisitor& visitor)
{
    RequestIterator* iterator = takeFiringWalk();
    // Nobody subscribed, the usual case while nobody inspects.
    if (iterator == nullptr) {
        return;
    }
    IteratorGuard guard(*this, iterator);
    const LocationBreakpointVisitor* breakpoint = LocationBreakpointVisitor::asExactly(visitor);
    while (AbstractEventRequest* request = nextToVisit(*iterator, breakpoint)) {
        request->accept(visitor);
    }
}

RequestIterator* RequestRegistry::takeFiringWalk()
{
    ScopedMutex guard(mutex);
    if (requests.empty()) {
        return nullptr;
    }
    if (firingWalkInUse) {
        return createIterator();
    }
    firingWalkInUse = true;
    firingWalk.restart();
    iterators.push_back(&firingWalk);
    return &firingWalk;
}

// A breakpoint fired at a location is offered to every breakpoint, and most refuse it on their filters
// alone; those are passed over here, under the one lock of this step, instead of a step each outside it.
// Passing over is what visiting them would have done, and as a longer hold of the lock it is a
// schedule that the unlocked walk allows too.
AbstractEventRequest* RequestRegistry::nextToVisit(RequestIterator& walk, const LocationBreakpointVisitor* breakpoint)
{
    ScopedMutex guard(mutex);
    return walk.nextHeld(breakpoint);
}

RequestIterator* RequestRegistry::createIterator()
{
    ScopedMutex guard(mutex);
    RequestIterator* iterator = TOV_NEW RequestIterator(requests, mutex);
    iterators.push_back(iterator);
    return iterator;
}

void RequestRegistry::destroyIterator(RequestIterator* iterator)
{
    ScopedMutex guard(mutex);
    const auto found = std::find(iterators.begin(), iterators.end(), iterator);
    if (found == iterators.end()) {
        return;
    }
    iterators.erase(found);
    if (iterator == &firingWalk) {
        firingWalk.restart();
        firingWalkInUse = false;
    } else {
        TOV_DELETE(iterator);
    }
    destroyRetiredRequests();
}

// A firing thread holds the request that its iterator gave last, unlocked, while another thread may
// unsubscribe it (a client over HTTP, say) or one of its own listeners does. Destroying it then would
// pull it from under the firing; it waits in `retired` until nothing holds it any more.
void RequestRegistry::destroyRequest(AbstractEventRequest* request)
{
    if (isInHand(request)) {
        retired.push_back(request);
    } else {
        TOV_DELETE(request);
    }
}

bool RequestRegistry::isInHand(const AbstractEventRequest* request) const
{
    const auto holds = [request](const RequestIterator* iterator) { return iterator->getCurrent() == request; };
    return std::find(inHand.begin(), inHand.end(), request) != inHand.end() ||
           std::any_of(iterators.begin(), iterators.end(), holds);
}

void RequestRegistry::destroyRetiredRequests()
{
    for (size_t index = 0; index < retired.size();) {
        AbstractEventRequest* request = retired[index];
        if (isInHand(request)) {
            ++index;
        } else {
            retired.erase(retired.begin() + static_cast<std::ptrdiff_t>(index));
            TOV_DELETE(request);
        }
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
