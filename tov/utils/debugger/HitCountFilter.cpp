#include <tov/utils/debugger/HitCountFilter.h>

#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_DERIVED(HitCountFilter, AbstractEventFilter, "tov::utils::debugger::HitCountFilter",
                                 "6bd03c2e-d96f-4318-a68e-a359970c6ba3")

HitCountFilter::HitCountFilter(int count, Mode mode) : count(count), mode(mode), hits(1) {}

HitCountFilter::~HitCountFilter() = default;

void HitCountFilter::update()
{
    hits.fetch_add(1, std::memory_order_relaxed);
}

void HitCountFilter::accept(AbstractEventFilterVisitor& visitor) const
{
    visitor.visit(*this);
}

bool HitCountFilter::operator()() const
{
    // QUIRK(hit-count-all-entities): the passes of every entity count together, and every pass from the
    // count on matches in atLeast mode; clients remove a breakpoint once it stopped what they wanted.
    const int passes = hits.load(std::memory_order_relaxed);
    switch (mode) {
    case atLeast:
        return passes >= count;
    case exactly:
        return passes == count;
    case everyMultiple:
        // A count of 0 would divide by zero and end the process; it never matches instead. So does -1,
        // whose remainder of the lowest int overflows: every pass is a multiple of it anyway.
        if (count == 0) {
            return false;
        }
        return count == -1 || passes % count == 0;
    }
    return false;
}

int HitCountFilter::getCount() const
{
    return count;
}

HitCountFilter::Mode HitCountFilter::getMode() const
{
    return mode;
}

int HitCountFilter::getHits() const
{
    return hits.load(std::memory_order_relaxed);
}

} // namespace debugger
} // namespace utils
} // namespace tov
