#pragma once
// TargetDisconnectRequest: asks to be told when the host disconnects its simulation; the host fires it.
//   registry.subscribe<TargetDisconnectRequest>(&listener, 1, nullptr, 0);   // listener.onDisconnection(h)

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API TargetDisconnectRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit TargetDisconnectRequest(unsigned int handle);
    ~TargetDisconnectRequest() override;

    // Keeps no filter: destroys it at once and gives false.
    bool addFilter(AbstractEventFilter* filter) override;
    // Nothing to count.
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Tells every listener onDisconnection; true once all are told.
    bool notify() const;
};

} // namespace debugger
} // namespace utils
} // namespace tov
