#pragma once
// HttpClient: one HTTP/1.1 exchange per call, each over a connection of its own, since the inspector
// closes every connection after its reply. Only the first reply on a connection is read.
//   HttpClient client("127.0.0.1", "8000");
//   HttpReply reply;
//   if (client.exchange("GET", "/api/debug", "", reply)) { /* reply.status == 200, reply.body */ }

#include <string>

namespace tov {
namespace inspect {

struct HttpReply {
    int status = 0;
    std::string reason;   // the reason phrase of the status line
    std::string body;
};

class HttpClient {
public:
    enum Failure {
        none,
        unreachable,   // no connection could be made
        broken,        // the connection failed or timed out during the exchange
        malformed,     // what came back is no HTTP reply
    };

    // `host` is a name or an address, `port` a decimal number; both are shown as given in messages.
    HttpClient(std::string host, std::string port, int timeoutMilliseconds = 10000);

    // Sends the request, with a Content-Length always, and reads the head and the body of the first
    // reply. False on failure, which getFailure and getError then describe.
    bool exchange(const std::string& method, const std::string& target, const std::string& body, HttpReply& reply);

    Failure getFailure() const { return failure; }
    // One line without a line end, such as "cannot connect to 127.0.0.1:8000: connection refused".
    const std::string& getError() const { return error; }

private:
    int connect();
    bool fail(Failure kind, const std::string& what, int systemError);

    std::string host;
    std::string port;
    int timeoutMilliseconds;
    Failure failure = none;
    std::string error;
};

} // namespace inspect
} // namespace tov
