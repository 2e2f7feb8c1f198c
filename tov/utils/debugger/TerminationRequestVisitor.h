#pragma once
// TerminationRequestVisitor: fired by the registry of requests when it ends, and by any host that likes.
//   void visit(TerminationRequest& r) override { r.notify(); }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class TerminationRequest;

class TOV_UTILS_API TerminationRequestVisitor : public AbstractEventRequestVisitor {
public:
    TerminationRequestVisitor();
    ~TerminationRequestVisitor() override;

    // Passes a TerminationRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(TerminationRequest& request) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
