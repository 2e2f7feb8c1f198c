#pragma once
// HitCountFilterVisitor: judges the current pass against the HitCountFilters of a request. Several
// filters combine by AND: the pass counts when each of them lets it through, or when there is none.
//   HitCountFilterVisitor judge;
//   filter.accept(judge);   // judge.isValid()

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API HitCountFilterVisitor : public AbstractEventFilterVisitor {
public:
    HitCountFilterVisitor();
    ~HitCountFilterVisitor() override;

    bool isValid() const override;
    bool visit(const AbstractEventFilter& filter) override;

private:
    bool valid;
    bool found;
};

} // namespace debugger
} // namespace utils
} // namespace tov
