#pragma once
// RequestGuard: decides from its headers whether a request may reach the inspector at all. A browser
// names the page that sends a request in Origin and the name it resolved in Host: a page of another
// site, or one that rebound its own name to this machine, is refused before any engine sees it.
// Clients that are not browsers send no Origin and pass on Host alone.
//   RequestGuard guard(settings, "127.0.0.1");
//   RequestGuard::Verdict verdict = guard.admit(host, origin);   // verdict.code 403 for a stranger
//   if (verdict.code == 0) verdict = guard.authorize(authorization);

#include <tov/utils/Containers.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {
namespace debugger {

struct HttpSettings;

namespace impl {

class RequestGuard {
public:
    struct Verdict {
        Verdict();

        // 0 when the request may go on; otherwise the HTTP status of its refusal.
        unsigned int code;
        // Why it was refused, as logged and as told to the client.
        String message;
    };

    // `listeningHostName` is the listening address as a Host header names it ("127.0.0.1", "[::1]").
    RequestGuard(const HttpSettings& settings, const String& listeningHostName);

    // Host and Origin as sent, null when absent. A request without Host is let through: every browser
    // sends one.
    Verdict admit(const char* host, const char* origin) const;
    // The Authorization header, null when absent; anything goes when no token is set.
    Verdict authorize(const char* authorization) const;
    // The header lines of every reply to a request from `origin` (null when absent): the origin echoed
    // for an admitted page, never "*".
    String getCorsHeaders(const char* origin) const;

    // The host name of a Host header: "[::1]" of "[::1]:8000", "localhost" of "localhost".
    static String extractHostName(const char* host);

private:
    bool isAllowedHost(const String& name) const;
    bool isAllowedOrigin(const char* origin, const char* host) const;

    Vector<String> hosts;
    Vector<String> origins;
    String token;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
