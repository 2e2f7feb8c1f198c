#pragma once
// RequestIterator: a walk over the requests of a RequestRegistry that holds the registry's lock only
// inside next, so that what it hands out can subscribe and unsubscribe, from any thread, while it runs.
// It offers every request that is still there, and a request added meanwhile too.
//   RequestIterator* walk = registry.createIterator();
//   while (AbstractEventRequest* request = walk->next()) request->accept(visitor);
//   registry.destroyIterator(walk);

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/Mutex.h>

namespace tov {
namespace utils {
namespace debugger {

class AbstractEventRequest;
class LocationBreakpointVisitor;
class RequestRegistry;

class TOV_UTILS_API RequestIterator {
public:
    // `requests` is guarded by `registryMutex`, which next takes. The registry tells its iterators of
    // changes with that lock held, so it guards the walk's own state as well.
    RequestIterator(const Vector<AbstractEventRequest*>& requests, Mutex& registryMutex);
    virtual ~RequestIterator();
    RequestIterator(const RequestIterator&) = delete;
    RequestIterator& operator=(const RequestIterator&) = delete;

    // The next request not given out yet, or null at the end. An end is not final: a request subscribed
    // after it is given by the following call.
    AbstractEventRequest* next();

private:
    friend class RequestRegistry;

    // The registry tells where its list changed, with its lock held. Both steps back to that index, and
    // both forget the handle that equals the index: since a handle is always above its request's index,
    // that handle belongs to a request in front of the change, which a later step back reaches and
    // offers once more.
    // QUIRK(walk-offers-again): listeners tolerate the repeat, and the positions that
    // the registry's own walk relies on stay as they are.
    void onRequestAdded(unsigned int index);
    void onRequestRemove(unsigned int index);
    void stepBack(unsigned int index);
    // next for a caller that holds the registry's lock already, passing over (without giving them) the
    // requests that `passingOver`, unless null, would leave untouched.
    AbstractEventRequest* nextHeld(const LocationBreakpointVisitor* passingOver);
    // Back to a walk that has given nothing yet, for the registry to walk again with the same iterator.
    void restart();
    // Whether `handle` is new to `visited`, which then holds it.
    bool markVisited(unsigned int handle);

    // The request that the last next gave, until the following call; null at the end. The registry
    // reads it with its lock held, so as not to destroy a request that a walk is still using.
    AbstractEventRequest* getCurrent() const;

    const Vector<AbstractEventRequest*>& requests;
    Mutex mutex;
    Mutex* registryMutex;
    // Only a hint of where to look: after a change in front of it, the walk looks again from there and
    // `visited`, which is the truth, passes over what it gave out already.
    unsigned int position;
    // The handles given out, in ascending order: a firing offers a few requests, and a sorted vector
    // that keeps its room across walks costs no allocation per firing where a set takes one per handle.
    Vector<unsigned int> visited;
    AbstractEventRequest* current;
};

} // namespace debugger
} // namespace utils
} // namespace tov
