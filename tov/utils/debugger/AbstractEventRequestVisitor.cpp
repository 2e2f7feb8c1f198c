#include <tov/utils/debugger/AbstractEventRequestVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractEventRequestVisitor::~AbstractEventRequestVisitor() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
