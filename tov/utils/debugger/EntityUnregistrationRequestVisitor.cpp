#include <tov/utils/debugger/EntityUnregistrationRequestVisitor.h>

#include <tov/utils/debugger/EntityUnregistrationRequest.h>

namespace tov {
namespace utils {
namespace debugger {

EntityUnregistrationRequestVisitor::EntityUnregistrationRequestVisitor(unsigned int entity) : entity(entity) {}

EntityUnregistrationRequestVisitor::~EntityUnregistrationRequestVisitor() = default;

void EntityUnregistrationRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == EntityUnregistrationRequest::getClassTypeId()) {
        visit(static_cast<EntityUnregistrationRequest&>(request));
    }
}

unsigned int EntityUnregistrationRequestVisitor::getEntity() const
{
    return entity;
}

} // namespace debugger
} // namespace utils
} // namespace tov
