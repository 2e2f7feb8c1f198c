#include "apps/common/HostAddress.h"

#include <cstdlib>

namespace tov {
namespace client {

namespace {

bool isPort(const std::string& text)
{
    if (text.empty() || text.size() > 5 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    const long value = std::strtol(text.c_str(), nullptr, 10);
    return value >= 1 && value <= 65535;
}

} // namespace

bool HostAddress::parse(const std::string& text, std::string& error)
{
    std::string rest = text;
    const std::size_t scheme = rest.find("://");
    if (scheme != std::string::npos) {
        if (rest.compare(0, scheme, "http") != 0) {
            error = "'" + text + "': only http:// is spoken";
            return false;
        }
        rest = rest.substr(scheme + 3);
    }
    // What follows the authority (a path such as /api) is the client's own business, not the host's.
    rest = rest.substr(0, rest.find_first_of("/?#"));
    std::string name = rest;
    // An IPv6 address stands in brackets, "[::1]:8000": its port is the one behind the bracket.
    const std::size_t bracket = rest.rfind(']');
    const std::size_t colon = rest.rfind(':');
    if (colon != std::string::npos && (bracket == std::string::npos || colon > bracket)) {
        name = rest.substr(0, colon);
        const std::string number = rest.substr(colon + 1);
        if (!isPort(number)) {
            error = "'" + number + "' is no port (1 to 65535)";
            return false;
        }
        port = number;
    }
    if (name.empty() || name.find_first_of(" \t@") != std::string::npos) {
        error = "'" + text + "' names no host";
        return false;
    }
    host = name;
    return true;
}

bool HostAddress::resolve(const HostOptions& options, const char* environmentUrl, std::string& error)
{
    if (!options.url.empty()) {
        if (!parse(options.url, error)) {
            return false;
        }
    } else if (options.host.empty() && environmentUrl != nullptr && *environmentUrl != '\0') {
        if (!parse(environmentUrl, error)) {
            error = "TOV_INSPECT_URL: " + error;
            return false;
        }
    }
    if (!options.host.empty() && !parse(options.host, error)) {
        return false;
    }
    // --port wins over a port written in --host or --url: it is the more specific of the two.
    if (!options.port.empty()) {
        if (!isPort(options.port)) {
            error = "'" + options.port + "' is no port (1 to 65535)";
            return false;
        }
        port = options.port;
    }
    base = "http://" + host + ":" + port;
    return true;
}

std::string HostAddress::toResourcePath(const std::string& typed)
{
    std::string path = typed;
    const std::size_t scheme = path.find("://");
    if (scheme != std::string::npos) {
        const std::size_t slash = path.find('/', scheme + 3);
        path = slash == std::string::npos ? std::string() : path.substr(slash);
    }
    path.erase(0, path.find_first_not_of('/'));
    if (path == "api" || path.compare(0, 4, "api/") == 0) {
        path.erase(0, 3);
        path.erase(0, path.find_first_not_of('/'));
    }
    return path;
}

} // namespace client
} // namespace tov
