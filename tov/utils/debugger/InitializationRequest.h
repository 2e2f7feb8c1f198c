#pragma once
// InitializationRequest: asks to be told that the debugger runs. The registry tells a new subscriber at
// once, since the start may lie in the past; later firings are the host's.
//   registry.subscribe<InitializationRequest>(&listener, 1, nullptr, 0);   // listener.onInitialization(h) ran

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API InitializationRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit InitializationRequest(unsigned int handle);
    ~InitializationRequest() override;

    // Keeps no filter: destroys it at once and gives false.
    bool addFilter(AbstractEventFilter* filter) override;
    // Nothing to count.
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Tells every listener onInitialization.
    void notify();
};

} // namespace debugger
} // namespace utils
} // namespace tov
