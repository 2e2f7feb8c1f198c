#pragma once
// A raw HTTP client for tests over loopback: it sends bytes exactly as given, so that malformed requests
// can be sent, and reads until the server closes. Every socket operation is bounded by the time-out.

#include <string>
#include <vector>

namespace tov {
namespace testing {

struct HttpReply {
    int status = 0;
    std::string head; // the status line and the header lines, each with its CR LF
    std::string body;

    std::string header(const std::string& name) const; // "" when absent
};

// A port that nothing listens on at 127.0.0.1 right now; 0 when none could be found.
unsigned int findFreePort();

class RawHttpClient {
public:
    explicit RawHttpClient(unsigned int port, int timeoutMilliseconds = 10000);
    ~RawHttpClient();
    RawHttpClient(const RawHttpClient&) = delete;
    RawHttpClient& operator=(const RawHttpClient&) = delete;

    bool connect();
    // False when the server stops reading or closes first.
    bool send(const std::string& bytes);
    // Everything until the server closes; `closed` tells whether it did before the time-out.
    std::string receiveAll(bool* closed = nullptr);

    // Connect, send, receive: the raw answer, "" when nobody listens.
    static std::string exchange(unsigned int port, const std::string& request, int timeoutMilliseconds = 10000);
    // The replies one after another in `raw`, each body as long as its Content-Length (or the rest).
    static std::vector<HttpReply> parseReplies(const std::string& raw);

private:
    unsigned int port;
    int timeoutMilliseconds;
    int socket = -1;
};

} // namespace testing
} // namespace tov
