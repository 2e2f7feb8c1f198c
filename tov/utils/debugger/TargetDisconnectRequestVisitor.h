#pragma once
// TargetDisconnectRequestVisitor: fired by a host that disconnects its simulation.
//   void visit(TargetDisconnectRequest& r) override { r.notify(); }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class TargetDisconnectRequest;

class TOV_UTILS_API TargetDisconnectRequestVisitor : public AbstractEventRequestVisitor {
public:
    TargetDisconnectRequestVisitor();
    ~TargetDisconnectRequestVisitor() override;

    // Passes a TargetDisconnectRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(TargetDisconnectRequest& request) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
