#include <tov/utils/debugger/EntitiesFilterVisitor.h>

#include <tov/utils/debugger/EntitiesFilter.h>

namespace tov {
namespace utils {
namespace debugger {

EntitiesFilterVisitor::EntitiesFilterVisitor(unsigned int entity) : entity(entity), valid(false), found(false) {}

EntitiesFilterVisitor::~EntitiesFilterVisitor() = default;

bool EntitiesFilterVisitor::isValid() const
{
    return !found || valid;
}

bool EntitiesFilterVisitor::visit(const AbstractEventFilter& filter)
{
    if (filter.getTypeId() != EntitiesFilter::getClassTypeId()) {
        return false;
    }
    found = true;
    if (!valid) {
        valid = static_cast<const EntitiesFilter&>(filter)(entity);
    }
    return true;
}

} // namespace debugger
} // namespace utils
} // namespace tov
