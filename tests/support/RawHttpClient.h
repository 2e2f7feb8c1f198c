#pragma once
// A raw HTTP client for tests over loopback: it sends bytes exactly as given, so that malformed requests
// can be sent, and reads everything until the server closes. Every socket operation has a deadline.

#include <string>
#include <vector>

namespace tov {
namespace testing {

struct HttpReply {
    int status = 0;
    std::string head;   // the status line and the header lines, up to the blank line
    std::string body;

    // The value of a header, "" when absent.
    std::string header(const std::string& name) const;
};

// A port that nothing listens on at 127.0.0.1 right now.
unsigned int findFreePort();

class RawHttpClient {
public:
    explicit RawHttpClient(unsigned int port, int timeoutMilliseconds = 10000);
    ~RawHttpClient();
    RawHttpClient(const RawHttpClient&) = delete;
    RawHttpClient& operator=(const RawHttpClient&) = delete;

    bool connect();
    // False when the deadline passes or the server closes first.
    bool send(const std::string& bytes);
    // Everything until the server closes; `closed` tells whether it did before the deadline.
    std::string receiveAll(bool* closed = nullptr);
    void close();

    // Connects, sends, receives: the raw answer ("" when the connection failed).
    static std::string exchange(unsigned int port, const std::string& request, int timeoutMilliseconds = 10000);
    // The replies that follow one another in `raw`, each with the body its Content-Length gives (or the
    // rest when there is none).
    static std::vector<HttpReply> parseReplies(const std::string& raw);

private:
    bool wait(short events);

    unsigned int port;
    int timeoutMilliseconds;
    int socket;
};

} // namespace testing
} // namespace tov
