#include <tov/utils/debugger/EntityRegistrationRequestVisitor.h>

#include <tov/utils/debugger/EntityRegistrationRequest.h>

namespace tov {
namespace utils {
namespace debugger {

EntityRegistrationRequestVisitor::EntityRegistrationRequestVisitor(unsigned int entity) : entity(entity) {}

EntityRegistrationRequestVisitor::~EntityRegistrationRequestVisitor() = default;

void EntityRegistrationRequestVisitor::visit(AbstractEventRequest& request)
{
    if (request.getTypeId() == EntityRegistrationRequest::getClassTypeId()) {
        visit(static_cast<EntityRegistrationRequest&>(request));
    }
}

unsigned int EntityRegistrationRequestVisitor::getEntity() const
{
    return entity;
}

} // namespace debugger
} // namespace utils
} // namespace tov
