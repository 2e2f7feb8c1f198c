#include <tov/utils/debugger/AbstractEventListener.h>

namespace tov {
namespace utils {
namespace debugger {

// Out of line, so that the interface has one home for its virtual table.
AbstractEventListener::~AbstractEventListener() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
