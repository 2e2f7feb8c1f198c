#pragma once
// InitializationRequestVisitor: fired by a host whose simulation starts; the registry also tells
// each new subscriber at once.
//   void visit(InitializationRequest& r) override { r.notify(); }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class InitializationRequest;

class TOV_UTILS_API InitializationRequestVisitor : public AbstractEventRequestVisitor {
public:
    InitializationRequestVisitor();
    ~InitializationRequestVisitor() override;

    // Passes an InitializationRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(InitializationRequest& request) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
