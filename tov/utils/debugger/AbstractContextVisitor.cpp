#include <tov/utils/debugger/AbstractContextVisitor.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractContextVisitor::~AbstractContextVisitor() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
