#include <tov/utils/debugger/TargetDisconnectRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(TargetDisconnectRequest, AbstractEventRequest,
                                 "tov::utils::debugger::TargetDisconnectRequest",
                                 "DC773989-1044-44D6-8993-3351B64DFD35")

TargetDisconnectRequest::TargetDisconnectRequest(unsigned int handle) : AbstractEventRequest(handle) {}

TargetDisconnectRequest::~TargetDisconnectRequest() = default;

bool TargetDisconnectRequest::addFilter(AbstractEventFilter* filter)
{
    TOV_DELETE(filter);
    return false;
}

void TargetDisconnectRequest::update() {}

void TargetDisconnectRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

bool TargetDisconnectRequest::notify() const
{
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onDisconnection(getHandle());
    }
    return true;
}

} // namespace debugger
} // namespace utils
} // namespace tov
