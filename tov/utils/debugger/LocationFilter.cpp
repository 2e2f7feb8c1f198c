#include <tov/utils/debugger/LocationFilter.h>

#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(LocationFilter, AbstractEventFilter, "tov::utils::debugger::LocationFilter",
                                 "060a160a-9175-42cf-8548-836663cb62bd")

LocationFilter::LocationFilter(const Uri& location) : location(location) {}

LocationFilter::~LocationFilter() = default;

void LocationFilter::update() {}

void LocationFilter::accept(AbstractEventFilterVisitor& visitor) const
{
    visitor.visit(*this);
}

bool LocationFilter::operator()(const Uri& location) const
{
    return this->location == location;
}

const Uri& LocationFilter::getLocation() const
{
    return location;
}

} // namespace debugger
} // namespace utils
} // namespace tov
