#include <tov/utils/debugger/TerminationRequestVisitor.h>

#include <tov/utils/debugger/TerminationRequest.h>

namespace tov {
namespace utils {
namespace debugger {

TerminationRequestVisitor::TerminationRequestVisitor() = default;

TerminationRequestVisitor::~TerminationRequestVisitor() = default;

void TerminationRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == TerminationRequest::getClassTypeId()) {
        visit(static_cast<TerminationRequest&>(request));
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
