#include <tov/utils/debugger/TargetSuspendRequest.h>

#include <tov/utils/Memory.h>
#include <tov/utils/debugger/AbstractEventListener.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>
#include <tov/utils/debugger/EntitiesFilter.h>
#include <tov/utils/debugger/EntitiesFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(TargetSuspendRequest, AbstractEventRequest,
                                 "tov::utils::debugger::TargetSuspendRequest", "43672C42-C091-4BFB-A4FE-D3A38EA9B883")

TargetSuspendRequest::TargetSuspendRequest(unsigned int handle) : AbstractEventRequest(handle) {}

TargetSuspendRequest::~TargetSuspendRequest()
{
    for (AbstractEventFilter* filter : filters) {
        TOV_DELETE(filter);
    }
}

bool TargetSuspendRequest::addFilter(AbstractEventFilter* filter)
{
    if (filter != nullptr && filter->getTypeId() == EntitiesFilter::getClassTypeId()) {
        filters.push_back(filter);
        return true;
    }
    TOV_DELETE(filter);
    return false;
}

void TargetSuspendRequest::update()
{
    for (AbstractEventFilter* filter : filters) {
        filter->update();
    }
}

void TargetSuspendRequest::accept(AbstractEventRequestVisitor& visitor)
{
    visitor.visit(*this);
}

bool TargetSuspendRequest::notify(unsigned int entity) const
{
    EntitiesFilterVisitor visitor(entity);
    for (const AbstractEventFilter* filter : filters) {
        filter->accept(visitor);
    }
    if (!visitor.isValid()) {
        return false;
    }
    const Vector<AbstractEventListener*>& listeners = getListeners();
    for (size_t index = 0; index < listeners.size(); ++index) {
        listeners[index]->onSuspension(getHandle(), entity);
    }
    return true;
}

} // namespace debugger
} // namespace utils
} // namespace tov
