#include <tov/utils/debugger/AbstractEventFilter.h>

namespace tov {
namespace utils {
namespace debugger {

TOV_STATIC_OBJECT_DEFINE_ROOT(AbstractEventFilter, "tov::utils::debugger::AbstractEventFilter",
                              "70CC68F4-F0B4-41EC-8EB8-A174CB0FD0DC")

AbstractEventFilter::~AbstractEventFilter() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
