#include <tov/utils/debugger/AbstractEventFilterVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractEventFilterVisitor::~AbstractEventFilterVisitor() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
