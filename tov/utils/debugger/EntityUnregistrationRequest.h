#pragma once
// EntityUnregistrationRequest: asks to be told of every entity that leaves the debugger.
//   registry.subscribe<EntityUnregistrationRequest>(&listener, 1, nullptr, 0);   // listener.onUnregistration(h, e)

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API EntityUnregistrationRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit EntityUnregistrationRequest(unsigned int handle);
    ~EntityUnregistrationRequest() override;

    // Keeps no filter: destroys it at once and gives false.
    bool addFilter(AbstractEventFilter* filter) override;
    // Nothing to count.
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Tells every listener onUnregistration; true once all are told.
    bool notify(unsigned int entity) const;
};

} // namespace debugger
} // namespace utils
} // namespace tov
