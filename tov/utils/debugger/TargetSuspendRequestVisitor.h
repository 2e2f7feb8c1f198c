#pragma once
// TargetSuspendRequestVisitor: fired when an entity's thread is about to stop in the execution controller.
//   void visit(TargetSuspendRequest& r) override { r.notify(getEntity()); }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class TargetSuspendRequest;

class TOV_UTILS_API TargetSuspendRequestVisitor : public AbstractEventRequestVisitor {
public:
    explicit TargetSuspendRequestVisitor(unsigned int entity);
    ~TargetSuspendRequestVisitor() override;

    // Passes a TargetSuspendRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(TargetSuspendRequest& request) = 0;

    unsigned int getEntity() const;

private:
    unsigned int entity;
};

} // namespace debugger
} // namespace utils
} // namespace tov
