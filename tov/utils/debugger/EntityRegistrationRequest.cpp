#include <tov/utils/debugger/EntityRegistrationRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(EntityRegistrationRequest, AbstractEventRequest,
                                 "tov::utils::debugger::EntityRegistrationRequest",
                                 "7FF2390A-AA6F-4E1D-A28C-448238C5DCF6")

EntityRegistrationRequest::EntityRegistrationRequest(unsigned int handle) : AbstractEventRequest(handle) {}

EntityRegistrationRequest::~EntityRegistrationRequest() = default;

bool EntityRegistrationRequest::addFilter(AbstractEventFilter* filter)
{
    TOV_DELETE(filter);
    return false;
}

void EntityRegistrationRequest::update() {}

void EntityRegistrationRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

void EntityRegistrationRequest::notify(unsigned int entity)
{
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onRegistration(getHandle(), entity);
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
