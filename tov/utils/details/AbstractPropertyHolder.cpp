#include <tov/utils/details/AbstractPropertyHolder.h>

namespace tov {
namespace utils {
namespace details {

AbstractPropertyHolder::~AbstractPropertyHolder() = default;

} // namespace details
} // namespace utils
} // namespace tov
