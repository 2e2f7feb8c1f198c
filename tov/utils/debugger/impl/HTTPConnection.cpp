#include <tov/utils/debugger/impl/HTTPConnection.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

HTTPConnection::~HTTPConnection() = default;

const char* HTTPConnection::getHeader(const char*) const
{
    return nullptr;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
