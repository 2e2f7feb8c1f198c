#pragma once
// AbstractEventFilterVisitor: judges an event against the filters of a request. It takes the filters of
// its own class, and a kind of filter that it never saw restricts nothing.
//   EntitiesFilterVisitor judge(entity);
//   for (AbstractEventFilter* filter : filters) filter->accept(judge);
//   if (judge.isValid()) ...

#include <tov/utils/Export.h>

namespace tov {
namespace utils {
namespace debugger {

class AbstractEventFilter;

class TOV_UTILS_API AbstractEventFilterVisitor {
public:
    AbstractEventFilterVisitor() = default;
    virtual ~AbstractEventFilterVisitor();

    // Whether the filters seen so far let the event pass.
    virtual bool isValid() const = 0;
    // True when the filter is of a class that this visitor judges; any other leaves it unchanged.
    virtual bool visit(const AbstractEventFilter& filter) = 0;
};

} // namespace debugger
} // namespace utils
} // namespace tov
