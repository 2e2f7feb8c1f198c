#pragma once
// TargetSuspendRequest: asks to be told when an entity's thread stops in the execution controller,
// narrowed by entities filters only. Refusing to tell does not prevent the stop.
//   const unsigned int ids[] = {3};
//   registry.subscribe<TargetSuspendRequest>(&listener, 1, filters, 1);   // filters[0]: an EntitiesFilter(ids, 1)

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventRequest.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API TargetSuspendRequest : public AbstractEventRequest {
    TOV_STATIC_OBJECT

public:
    explicit TargetSuspendRequest(unsigned int handle);
    ~TargetSuspendRequest() override;

    // Keeps EntitiesFilters; destroys anything else at once and gives false.
    bool addFilter(AbstractEventFilter* filter) override;
    void update() override;
    void accept(AbstractEventRequestVisitor& visitor) override;

    // Tells every listener onSuspension when the filters let the entity pass; false when they do not.
    bool notify(unsigned int entity) const;

private:
    Vector<AbstractEventFilter*> filters;
};

} // namespace debugger
} // namespace utils
} // namespace tov
