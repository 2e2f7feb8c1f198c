#include <tov/utils/debugger/AbstractEventRequest.h>

#include <algorithm>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_ROOT(AbstractEventRequest, "tov::utils::debugger::AbstractEventRequest",
                              "0476292e-8d52-4235-bf07-db5be5ec9bf4")

AbstractEventRequest::AbstractEventRequest(unsigned int handle) : handle(handle) {}

AbstractEventRequest::~AbstractEventRequest() = default;

unsigned int AbstractEventRequest::getHandle() const
{
    return handle;
}

void AbstractEventRequest::registerListener(AbstractEventListener& listener)
{
    listeners.push_back(&listener);
}

void AbstractEventRequest::unregisterListener(AbstractEventListener& listener)
{
    listeners.erase(std::remove(listeners.begin(), listeners.end(), &listener), listeners.end());
}

const Vector<AbstractEventListener*>& AbstractEventRequest::getListeners() const
{
    return listeners;
}

} // namespace debugger
} // namespace utils
} // namespace tov
