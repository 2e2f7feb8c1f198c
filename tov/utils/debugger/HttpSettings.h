#pragma once
// HttpSettings: how the inspector's configured HTTP server listens and whom it serves. The defaults keep
// it to this machine and to clients that are not web pages of other sites; a host relaxes them on purpose.
//   tov::utils::debugger::HttpSettings settings;            // 127.0.0.1, a free port, 4 threads
//   settings.allowedOrigins.push_back("http://localhost:5173");
//   if (inspector.startHttp(settings)) printf("port %u\n", inspector.getHttpPort());

#include <tov/utils/Containers.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {
namespace debugger {

struct TOV_UTILS_API HttpSettings {
    HttpSettings();

    // An IPv4 address ("127.0.0.1", "0.0.0.0" for every interface), an IPv6 address in brackets, or
    // "localhost". Anything else fails the start.
    String address;
    // 0 lets the system pick a free port; getHttpPort tells which after the start.
    unsigned int port;
    // Origins ("http://localhost:5173", scheme, host and port) whose pages may use the inspector besides
    // the server's own. Browsers send an origin with every request of a script; one that is neither the
    // server's own nor listed here is refused.
    Vector<String> allowedOrigins;
    // Host names (without port) that requests may be addressed to besides "localhost", "127.0.0.1",
    // "[::1]" and the listening address. Refusing others stops pages that rebind a name of theirs to
    // this machine.
    Vector<String> allowedHosts;
    // How long a client may take to send its request, head and body; a silent client holds one
    // connection thread that long at the most.
    unsigned int requestTimeoutMilliseconds;
    // Threads that read and write connections; resource operations still run one at a time.
    unsigned int connectionThreads;
    // When not empty, every request must carry "Authorization: Bearer <accessToken>".
    String accessToken;
    // Larger request bodies are refused before they are parsed.
    unsigned int maximumBodySize;
    // Serves the web viewer at /ui/.
    bool serveViewer;
};

} // namespace debugger
} // namespace utils
} // namespace tov
