#pragma once
// AbstractEventFilter: a predicate that narrows a request. Filter visitors hold the matching rules and
// pick the filters of their own class by type id, so a filter itself stays a plain predicate.
//   request.addFilter(TOV_NEW EntitiesFilter(ids, 2));   // the request owns it from here on

#include <tov/utils/Export.h>
#include <tov/utils/StaticObject.h>

namespace tov {
namespace utils {
namespace debugger {

class AbstractEventFilterVisitor;

class TOV_UTILS_API AbstractEventFilter : public StaticObject {
    TOV_STATIC_OBJECT

public:
    AbstractEventFilter() = default;
    ~AbstractEventFilter() override;

    // Counts one more pass of the firing that the filter narrows.
    virtual void update() = 0;
    // Offers the filter to `visitor`; whether the visitor took it is of no interest here.
    virtual void accept(AbstractEventFilterVisitor& visitor) const = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
