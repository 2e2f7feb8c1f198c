#include <tov/utils/debugger/InitializationRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(InitializationRequest, AbstractEventRequest,
                                 "tov::utils::debugger::InitializationRequest", "99d9780e-eb2b-487c-937a-1840077c0816")

InitializationRequest::InitializationRequest(unsigned int handle) : AbstractEventRequest(handle) {}

InitializationRequest::~InitializationRequest() = default;

bool InitializationRequest::addFilter(AbstractEventFilter* filter)
{
    TOV_DELETE(filter);
    return false;
}

void InitializationRequest::update() {}

void InitializationRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

void InitializationRequest::notify()
{
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onInitialization(getHandle());
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
