#include <tov/utils/debugger/HitCountFilterVisitor.h>

#include <tov/utils/debugger/HitCountFilter.h>

namespace tov {
namespace utils {
namespace debugger {

HitCountFilterVisitor::HitCountFilterVisitor() : valid(true), found(false) {}

HitCountFilterVisitor::~HitCountFilterVisitor() = default;

bool HitCountFilterVisitor::isValid() const
{
    return !found || valid;
}

bool HitCountFilterVisitor::visit(const AbstractEventFilter& filter)
{
    if (filter.getTypeId() != HitCountFilter::getClassTypeId()) {
        return false;
    }
    found = true;
    valid = valid && static_cast<const HitCountFilter&>(filter)();
    return true;
}

} // namespace debugger
} // namespace utils
} // namespace tov
