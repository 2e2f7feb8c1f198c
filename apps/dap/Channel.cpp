#include "apps/dap/Channel.h"

#include <cerrno>
#include <string>
#include <unistd.h>

namespace tov {
namespace dap {

bool Channel::send(nlohmann::json message)
{
    message["seq"] = sequence++;
    // Texts from the host may hold bytes that are no UTF-8: they are replaced, not refused.
    const std::string body = message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    const std::string header = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    return writeAll(header.data(), header.size()) && writeAll(body.data(), body.size());
}

bool Channel::writeAll(const char* bytes, std::size_t count)
{
    while (open && count > 0) {
        const ssize_t written = ::write(descriptor, bytes, count);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            open = false;
            break;
        }
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return open;
}

} // namespace dap
} // namespace tov
