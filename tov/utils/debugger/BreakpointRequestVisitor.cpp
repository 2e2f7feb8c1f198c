#include <tov/utils/debugger/BreakpointRequestVisitor.h>

#include <tov/utils/debugger/BreakpointRequest.h>

namespace tov {
namespace utils {
namespace debugger {

BreakpointRequestVisitor::BreakpointRequestVisitor(unsigned int entity, const Uri* location)
    : entity(entity), location(location)
{
}

BreakpointRequestVisitor::~BreakpointRequestVisitor() = default;

void BreakpointRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == BreakpointRequest::getClassTypeId()) {
        visit(static_cast<BreakpointRequest&>(request));
    }
}

unsigned int BreakpointRequestVisitor::getEntity() const
{
    return entity;
}

const Uri* BreakpointRequestVisitor::getLocation() const
{
    return location;
}

} // namespace debugger
} // namespace utils
} // namespace tov
