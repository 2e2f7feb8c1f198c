#pragma once
// HostAddress: where a client finds a host's inspector, from what a user types: --url, --host (a name,
// an address, "address:port" or a whole URL), --port, or the TOV_INSPECT_URL environment variable, in
// that order of precedence; 127.0.0.1:8000 when nothing is given.
//   HostAddress address;  std::string error;
//   if (address.resolve(given, std::getenv("TOV_INSPECT_URL"), error)) curl(address.getBase() + "/api/debug");

#include <string>

namespace tov {
namespace client {

// What the command line gave; empty texts were not given.
struct HostOptions {
    std::string url;
    std::string host;
    std::string port;
};

class HostAddress {
public:
    // False with a one-line reason, such as "'80a' is no port (1 to 65535)".
    bool resolve(const HostOptions& options, const char* environmentUrl, std::string& error);

    // "http://127.0.0.1:8000", without a trailing slash.
    const std::string& getBase() const { return base; }
    // "127.0.0.1:8000", for messages.
    std::string getAuthority() const { return host + ":" + port; }

    // A resource path as a user may paste it ("/api/world/tick", "api/world/tick", "world/tick" or a
    // whole URL "http://127.0.0.1:8000/api/world/tick") as the part below /api/: "world/tick".
    static std::string toResourcePath(const std::string& typed);

private:
    // Splits "http://name:port/path" or "name:port" or "name"; a part absent stays as it was.
    bool parse(const std::string& text, std::string& error);

    std::string host = "127.0.0.1";
    std::string port = "8000";
    std::string base;
};

} // namespace client
} // namespace tov
