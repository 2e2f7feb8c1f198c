#include <tov/utils/debugger/RequestIterator.h>

#include <tov/utils/ScopedMutex.h>
#include <tov/utils/debugger/AbstractEventRequest.h>
#include <tov/utils/debugger/LocationBreakpointVisitor.h>

#include <algorithm>

namespace tov {
namespace utils {
namespace debugger {

RequestIterator::RequestIterator(const Vector<AbstractEventRequest*>& requests, Mutex& registryMutex)
    : requests(requests), mutex(Mutex::Normal), registryMutex(&registryMutex), position(0), current(nullptr)
{
}

RequestIterator::~RequestIterator() = default;

AbstractEventRequest* RequestIterator::next()
{
    // Always the registry first: the registry tells its iterators of changes with its own lock held.
    // The registry's lock alone: every change of `position` and `visited` from outside comes from the
    // registry with that lock held.
    ScopedMutex registryGuard(*registryMutex);
    return nextHeld(nullptr);
}

AbstractEventRequest* RequestIterator::nextHeld(const LocationBreakpointVisitor* passingOver)
{
    const size_t size = requests.size();
    while (position < size) {
        AbstractEventRequest* request = requests[position];
        ++position;
        // Not marked as given: met again after a step back, it is passed over again, the same way.
        if (passingOver != nullptr && passingOver->passesOver(*request)) {
            continue;
        }
        if (markVisited(request->getHandle())) {
            current = request;
            return request;
        }
    }
    current = nullptr;
    return nullptr;
}

void RequestIterator::onRequestAdded(unsigned int index)
{
    stepBack(index);
}

void RequestIterator::onRequestRemove(unsigned int index)
{
    stepBack(index);
}

void RequestIterator::stepBack(unsigned int index)
{
    ScopedMutex guard(mutex);
    if (index < position) {
        position = index;
    }
    const auto found = std::lower_bound(visited.begin(), visited.end(), index);
    if (found != visited.end() && *found == index) {
        visited.erase(found);
    }
}

void RequestIterator::restart()
{
    position = 0;
    visited.clear();
    current = nullptr;
}

bool RequestIterator::markVisited(unsigned int handle)
{
    // A walk meets the handles in ascending order unless the list changed under it.
    if (visited.empty() || visited.back() < handle) {
        visited.push_back(handle);
        return true;
    }
    const auto found = std::lower_bound(visited.begin(), visited.end(), handle);
    if (found != visited.end() && *found == handle) {
        return false;
    }
    visited.insert(found, handle);
    return true;
}

AbstractEventRequest* RequestIterator::getCurrent() const
{
    return current;
}

} // namespace debugger
} // namespace utils
} // namespace tov
