#pragma once
// EntityRegistrationRequestVisitor: fired for each entity that registers with the debugger.
//   void visit(EntityRegistrationRequest& r) override { r.notify(getEntity()); }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class EntityRegistrationRequest;

class TOV_UTILS_API EntityRegistrationRequestVisitor : public AbstractEventRequestVisitor {
public:
    explicit EntityRegistrationRequestVisitor(unsigned int entity);
    ~EntityRegistrationRequestVisitor() override;

    // Passes an EntityRegistrationRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(EntityRegistrationRequest& request) = 0;

    unsigned int getEntity() const;

private:
    unsigned int entity;
};

} // namespace debugger
} // namespace utils
} // namespace tov
