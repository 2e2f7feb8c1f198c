#include <tov/utils/debugger/AbstractContextFactory.h>

namespace tov {
namespace utils {
namespace debugger {

AbstractContextFactory::~AbstractContextFactory() = default;

} // namespace debugger
} // namespace utils
} // namespace tov
