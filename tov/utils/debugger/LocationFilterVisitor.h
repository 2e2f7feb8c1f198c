#pragma once
// LocationFilterVisitor: judges one location against the LocationFilters of a request. Several filters
// combine by AND: the location passes when each of them names it, or when there is none.
//   LocationFilterVisitor judge(Uri::create("tov:simulation"));
//   filter.accept(judge);   // judge.isValid()

#include <tov/utils/Export.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API LocationFilterVisitor : public AbstractEventFilterVisitor {
public:
    // Keeps a copy, so that the visitor may outlive what it was given.
    explicit LocationFilterVisitor(const Uri& location);
    ~LocationFilterVisitor() override;

    bool isValid() const override;
    bool visit(const AbstractEventFilter& filter) override;

private:
    Uri location;
    bool valid;
    bool found;
};

} // namespace debugger
} // namespace utils
} // namespace tov
