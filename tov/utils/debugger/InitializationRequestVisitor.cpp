#include <tov/utils/debugger/InitializationRequestVisitor.h>

#include <tov/utils/debugger/InitializationRequest.h>

namespace tov {
namespace utils {
namespace debugger {

InitializationRequestVisitor::InitializationRequestVisitor() = default;

InitializationRequestVisitor::~InitializationRequestVisitor() = default;

void InitializationRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == InitializationRequest::getClassTypeId()) {
        visit(static_cast<InitializationRequest&>(request));
    }
}

} // namespace debugger
} // namespace utils
} // namespace tov
