#include <tov/utils/debugger/LocationFilterVisitor.h>

#include <tov/utils/debugger/LocationFilter.h>

namespace tov {
namespace utils {
namespace debugger {

LocationFilterVisitor::LocationFilterVisitor(const Uri& location) : location(location), valid(true), found(false) {}

LocationFilterVisitor::~LocationFilterVisitor() = default;

bool LocationFilterVisitor::isValid() const
{
    return !found || valid;
}

bool LocationFilterVisitor::visit(const AbstractEventFilter& filter)
{
    if (filter.getTypeId() != LocationFilter::getClassTypeId()) {
        return false;
    }
    found = true;
    valid = valid && static_cast<const LocationFilter&>(filter)(location);
    return true;
}

} // namespace debugger
} // namespace utils
} // namespace tov
