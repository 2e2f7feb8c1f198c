#include <tov/utils/debugger/TargetSuspendRequestVisitor.h>

#include <tov/utils/debugger/TargetSuspendRequest.h>

namespace tov {
namespace utils {
namespace debugger {

TargetSuspendRequestVisitor::TargetSuspendRequestVisitor(unsigned int entity) : entity(entity) {}

TargetSuspendRequestVisitor::~TargetSuspendRequestVisitor() = default;

void TargetSuspendRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == TargetSuspendRequest::getClassTypeId()) {
        visit(static_cast<TargetSuspendRequest&>(request));
    }
}

unsigned int TargetSuspendRequestVisitor::getEntity() const
{
    return entity;
}

} // namespace debugger
} // namespace utils
} // namespace tov
