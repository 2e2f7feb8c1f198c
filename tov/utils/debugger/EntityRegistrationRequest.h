#pragma once
// EntityRegistrationRequest: asks to be told of every entity that registers with the debugger.
//   registry.subscribe<EntityRegistrationRequest>(&listener, 1, nullptr, 0);   // listener.onRegistration(h, e)

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API EntityRegistrationRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit EntityRegistrationRequest(unsigned int handle);
    ~EntityRegistrationRequest() override;

    // Keeps no filter: destroys it at once and gives false.
    bool addFilter(AbstractEventFilter* filter) override;
    // Nothing to count.
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Tells every listener onRegistration.
    void notify(unsigned int entity);
};

} // namespace debugger
} // namespace utils
} // namespace tov
