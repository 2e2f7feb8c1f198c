#include <tov/utils/debugger/RequestIterator.h>

#include <tov/utils/ScopedMutex.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

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
    ScopedMutex registryGuard(*registryMutex);
    ScopedMutex guard(mutex);
    const size_t size = requests.size();
    while (position < size) {
        AbstractEventRequest* request = requests[position];
        ++position;
        if (visited.insert(request->getHandle()).second) {
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
    visited.erase(index);
}

AbstractEventRequest* RequestIterator::getCurrent() const
{
    return current;
}

} // namespace debugger
} // namespace utils
} // namespace tov
