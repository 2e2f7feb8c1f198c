#pragma once
// HostClient: one HTTP exchange with a host's inspector per call, through libcurl. It sends the access
// token when one is given, bounds every exchange in time, and reads a refusal's {"error": "..."} body.
//   HostClient client("http://127.0.0.1:8000", "");
//   HostReply reply;
//   if (client.exchange("GET", "debug/entities", "", reply)) { /* reply.status == 200, reply.body */ }

#include <string>

namespace tov {
namespace client {

struct HostReply {
    long status = 0;
    std::string body;

    // The text of a refusal's {"error": "..."} body, "" when the body is no such object.
    std::string getErrorText() const;
};

class HostClient {
public:
    enum Failure {
        none,
        unreachable, // no connection could be made
        broken,      // the connection failed or timed out during the exchange
        malformed,   // what came back is no HTTP reply
    };

    // `base` as HostAddress::getBase gives it; `token` is sent as "Authorization: Bearer <token>"
    // unless empty.
    HostClient(std::string base, std::string token, long timeoutMilliseconds = 10000);
    ~HostClient();
    HostClient(const HostClient&) = delete;
    HostClient& operator=(const HostClient&) = delete;

    // `path` is below /api/ ("debug/entities"); it is sent as given, so encode it first (encodePath).
    // False when no reply came, which getFailure and getError then describe.
    bool exchange(const std::string& method, const std::string& path, const std::string& body, HostReply& reply);

    Failure getFailure() const { return failure; }
    // One line, such as "cannot connect to 127.0.0.1:8000: connection refused".
    const std::string& getError() const { return error; }

    // A path as typed, fit for a request line: blanks, controls, bytes beyond ASCII and the characters
    // that may not stand in a path are percent-encoded; a '%' is kept, so an encoded path passes as it is.
    static std::string encodePath(const std::string& path);

private:
    std::string base;
    std::string token;
    long timeoutMilliseconds;
    void* handle; // the CURL easy handle, reused so that a command's exchanges share its set-up
    Failure failure = none;
    std::string error;
};

} // namespace client
} // namespace tov
