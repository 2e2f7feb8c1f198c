#pragma once
// AbstractEventRequestVisitor: carries one event to the requests of a registry. The visitors of the
// request classes pass on only requests of their own class, to a typed visit that a firing overrides.
//   class Fire : public TerminationRequestVisitor { void visit(TerminationRequest& r) override { r.notify(); } };
//   Fire fire; registry.accept(fire);

#include <tov/utils/Export.h>

namespace tov {
namespace utils {
namespace debugger {

class AbstractEventRequest;

class TOV_UTILS_API AbstractEventRequestVisitor {
public:
    AbstractEventRequestVisitor() = default;
    virtual ~AbstractEventRequestVisitor();

    virtual void visit(AbstractEventRequest& request) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
