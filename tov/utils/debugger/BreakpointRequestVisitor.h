#pragma once
// BreakpointRequestVisitor: what an engine fires at a location. Its typed visit asks canHit, then for a
// candidate isHit and notify, and calls update for every candidate, so that hits count the passes.
//   void visit(BreakpointRequest& r) override { const Uri& at = *getLocation();
//       if (r.canHit(getEntity(), at)) { if (r.isHit(getEntity(), at)) r.notify(getEntity(), at); r.update(); } }

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {

class Uri;

namespace debugger {

class BreakpointRequest;

class TOV_UTILS_API BreakpointRequestVisitor : public AbstractEventRequestVisitor {
public:
    BreakpointRequestVisitor(unsigned int entity, const Uri* location);
    ~BreakpointRequestVisitor() override;

    // Passes a BreakpointRequest on to the typed visit; ignores any other request.
    void visit(AbstractEventRequest& request) override;
    virtual void visit(BreakpointRequest& request) = 0;

    unsigned int getEntity() const;
    // May be null; such a visitor must not reach BreakpointRequest::canHit.
    const Uri* getLocation() const;

private:
    unsigned int entity;
    // Not owned.
    const Uri* location;
};

} // namespace debugger
} // namespace utils
} // namespace tov
