#pragma once
// AbstractPropertyHolder: the root of the accessors that a Property owns; a property copies them by clone.
//   details::AbstractPropertyHolder* copy = holder.clone();   // released with TOV_DELETE

#include <tov/utils/Export.h>

namespace tov {
namespace utils {
namespace details {

class TOV_UTILS_API AbstractPropertyHolder {
public:
    AbstractPropertyHolder() = default;
    virtual ~AbstractPropertyHolder();
    // A copy made by tracked new; the caller owns it.
    virtual AbstractPropertyHolder* clone() const = 0;

protected:
    AbstractPropertyHolder(const AbstractPropertyHolder&) = default;
    AbstractPropertyHolder& operator=(const AbstractPropertyHolder&) = default;
};

} // namespace details
} // namespace utils
} // namespace tov
