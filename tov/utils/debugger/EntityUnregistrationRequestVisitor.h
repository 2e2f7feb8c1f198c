#pragma once
// EntityUnregistrationRequestVisitor: fired for each entity that leaves the debugger.
//   void visit(EntityUnregistrationRequest& r) override { r.notify(getEntity()); }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class EntityUnregistrationRequest;

class TOV_UTILS_API EntityUnregistrationRequestVisitor : public AbstractEventRequestVisitor {
public:
    explicit EntityUnregistrationRequestVisitor(unsigned int entity);
    ~EntityUnregistrationRequestVisitor() override;

    // Passes an EntityUnregistrationRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(EntityUnregistrationRequest& request) = 0;

    unsigned int getEntity() const;

private:
    unsigned int entity;
};

} // namespace debugger
} // namespace utils
} // namespace tov
