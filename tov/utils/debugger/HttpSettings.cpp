#include <tov/utils/debugger/HttpSettings.h>

namespace tov {
namespace utils {
namespace debugger {

HttpSettings::HttpSettings()
    : address("127.0.0.1"), port(0), requestTimeoutMilliseconds(5000), connectionThreads(4),
      maximumBodySize(256 * 1024), serveViewer(true)
{
}

} // namespace debugger
} // namespace utils
} // namespace tov
