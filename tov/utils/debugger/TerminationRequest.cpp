#include <tov/utils/debugger/TerminationRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(TerminationRequest, AbstractEventRequest, "tov::utils::debugger::TerminationRequest",
                                 "4f42d75e-1837-4822-9de2-610f70752899")

TerminationRequest::TerminationRequest(unsigned int handle) : AbstractEventRequest(handle) {}

TerminationRequest::~TerminationRequest() = default;

bool TerminationRequest::addFilter(AbstractEventFilter* filter)
{
    TOV_DELETE(filter);
    return false;
}

void TerminationRequest::update() {}

void TerminationRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

void TerminationRequest::notify()
{
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onTermination(getHandle());
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
