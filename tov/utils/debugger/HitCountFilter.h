#pragma once
// HitCountFilter: lets through some passes of a breakpoint by their number, the first pass being 1. The
// count of passes lives as long as the filter; nothing resets it.
//   request.addFilter(TOV_NEW HitCountFilter(2, HitCountFilter::everyMultiple));   // passes 2, 4, 6 ...

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEventFilter.h>

#include <atomic>

namespace tov {
namespace utils {
namespace debugger {

class TOV_UTILS_API HitCountFilter : public AbstractEventFilter {
    TOV_STATIC_OBJECT

public:
    // Any other value lets nothing through; the fixed underlying type makes such a value legal.
    enum Mode : int { atLeast = 0, exactly = 1, everyMultiple = 2 };

    explicit HitCountFilter(int count = 1, Mode mode = atLeast);
    ~HitCountFilter() override;

    // One more pass.
    void update() override;
    void accept(AbstractEventFilterVisitor& visitor) const override;

    // Whether the current pass is let through.
    bool operator()() const;
    int getCount() const;
    Mode getMode() const;
    int getHits() const;

private:
    const int count;
    const Mode mode;
    // Counted by whichever thread fires, without a lock: atomic so that two threads passing the same
    // breakpoint at once count both passes, and so that the count wraps instead of overflowing.
    std::atomic<int> hits;
};

} // namespace debugger
} // namespace utils
} // namespace tov
