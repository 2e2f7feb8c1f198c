#include <tov/utils/debugger/TargetDisconnectRequestVisitor.h>

#include <tov/utils/debugger/TargetDisconnectRequest.h>

namespace tov {
namespace utils {
namespace debugger {

TargetDisconnectRequestVisitor::TargetDisconnectRequestVisitor() = default;

TargetDisconnectRequestVisitor::~TargetDisconnectRequestVisitor() = default;

void TargetDisconnectRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == TargetDisconnectRequest::getClassTypeId()) {
        visit(static_cast<TargetDisconnectRequest&>(request));
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
