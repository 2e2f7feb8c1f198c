#pragma once
// TerminationRequest: asks to be told when the debugger's registry of requests ends, once.
//   registry.subscribe<TerminationRequest>(&listener, 1, nullptr, 0);   // listener.onTermination(h) at its end

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API TerminationRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit TerminationRequest(unsigned int handle);
    ~TerminationRequest() override;

    // Keeps no filter: destroys it at once and gives false.
    bool addFilter(AbstractEventFilter* filter) override;
    // Nothing to count.
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Tells every listener onTermination.
    void notify();
};

} // namespace debugger
} // namespace utils
} // namespace tov
