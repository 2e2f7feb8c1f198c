#include <tov/utils/debugger/EntityUnregistrationRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventFilter.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(EntityUnregistrationRequest, AbstractEventRequest,
                                 "tov::utils::debugger::EntityUnregistrationRequest",
                                 "5DBC9B70-FB5F-4C90-B5EA-16532FAF4ECC")

EntityUnregistrationRequest::EntityUnregistrationRequest(unsigned int handle) : AbstractEventRequest(handle) {}

EntityUnregistrationRequest::~EntityUnregistrationRequest() = default;

bool EntityUnregistrationRequest::addFilter(AbstractEventFilter* filter)
{
    TOV_DELETE(filter);
    return false;
}

void EntityUnregistrationRequest::update() {}

void EntityUnregistrationRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

bool EntityUnregistrationRequest::notify(unsigned int entity) const
{
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onUnregistration(getHandle(), entity);
    }
    return true;
}

} // namespace debugger
} // namespace utils
} // namespace tov
