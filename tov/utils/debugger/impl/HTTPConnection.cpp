#include <tov/utils/debugger/impl/HTTPConnection.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

HTTPConnection::~HTTPConnection() = default;

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
