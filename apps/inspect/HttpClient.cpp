#include "apps/inspect/HttpClient.h"

#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tov {
namespace inspect {

namespace {

using Clock = std::chrono::steady_clock;

// A head longer than this is no inspector's; a body longer than this is not taken into memory.
constexpr std::size_t maximumHeadSize = 64 * 1024;
constexpr unsigned long long maximumBodySize = 256ull * 1024 * 1024;

std::string lowerCase(std::string text)
{
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

// Closes the socket on every way out, unless it is released.
class Socket {
public:
    explicit Socket(int descriptor) : descriptor(descriptor) {}
    ~Socket()
    {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    int get() const { return descriptor; }
    int release()
    {
        const int released = descriptor;
        descriptor = -1;
        return released;
    }

private:
    int descriptor;
};

// Waits until the socket is ready for `events`; false with errno set on failure, ETIMEDOUT at the
// deadline. A signal does not end the wait: the caller decides between exchanges whether to stop.
bool waitUntilReady(int socket, short events, Clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd entry{socket, events, 0};
        const int ready = ::poll(&entry, 1, left > 0 ? static_cast<int>(left) : 0);
        if (ready > 0) {
            return true;
        }
        if (ready == 0) {
            errno = ETIMEDOUT;
            return false;
        }
        if (errno != EINTR) {
            return false;
        }
    }
}

// A connected non-blocking socket for one address, or -1 with the reason in `systemError`.
int connectTo(const addrinfo& address, Clock::time_point deadline, int& systemError)
{
    Socket socket(::socket(address.ai_family, address.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC,
                           address.ai_protocol));
    if (socket.get() < 0) {
        systemError = errno;
        return -1;
    }
    if (::connect(socket.get(), address.ai_addr, address.ai_addrlen) != 0) {
        if (errno != EINPROGRESS) {
            systemError = errno;
            return -1;
        }
        if (!waitUntilReady(socket.get(), POLLOUT, deadline)) {
            systemError = errno;
            return -1;
        }
        int pending = 0;
        socklen_t size = sizeof(pending);
        if (::getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &pending, &size) != 0) {
            pending = errno;
        }
        if (pending != 0) {
            systemError = pending;
            return -1;
        }
    }
    return socket.release();
}

bool sendAll(int socket, const std::string& bytes, Clock::time_point deadline)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
        } else if (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
            return false;
        } else if (!waitUntilReady(socket, POLLOUT, deadline)) {
            return false;
        }
    }
    return true;
}

// Appends what the socket has to `received`: false on failure (errno set), and `closed` at its end.
bool receiveSome(int socket, std::string& received, bool& closed, Clock::time_point deadline)
{
    if (!waitUntilReady(socket, POLLIN, deadline)) {
        return false;
    }
    char buffer[16384];
    const ssize_t count = ::recv(socket, buffer, sizeof(buffer), 0);
    if (count < 0) {
        return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
    }
    closed = count == 0;
    received.append(buffer, static_cast<std::size_t>(count));
    return true;
}

// The value of a header in `head` (status line and header lines), by a name compared without case.
bool findHeader(const std::string& head, const std::string& name, std::string& value)
{
    const std::string wanted = lowerCase(name);
    for (std::size_t line = head.find("\r\n"); line != std::string::npos && line + 2 < head.size();) {
        const std::size_t start = line + 2;
        const std::size_t end = head.find("\r\n", start);
        const std::size_t colon = head.find(':', start);
        if (colon != std::string::npos && colon < end && lowerCase(head.substr(start, colon - start)) == wanted) {
            const std::size_t first = head.find_first_not_of(" \t", colon + 1);
            value = first < end ? head.substr(first, end - first) : "";
            return true;
        }
        line = end;
    }
    return false;
}

// "HTTP/1.1 200 OK": the code and the reason phrase.
bool parseStatusLine(const std::string& head, HttpReply& reply)
{
    const std::string line = head.substr(0, head.find("\r\n"));
    if (line.compare(0, 5, "HTTP/") != 0) {
        return false;
    }
    const std::size_t space = line.find(' ');
    if (space == std::string::npos || space + 4 > line.size()) {
        return false;
    }
    for (std::size_t i = space + 1; i < space + 4; ++i) {
        if (!std::isdigit(static_cast<unsigned char>(line[i]))) {
            return false;
        }
    }
    reply.status = std::atoi(line.c_str() + space + 1);
    reply.reason = space + 5 <= line.size() ? line.substr(space + 5) : "";
    return true;
}

bool parseLength(const std::string& text, unsigned long long& length)
{
    if (text.empty() || text.size() > 19 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    length = std::strtoull(text.c_str(), nullptr, 10);
    return true;
}

} // namespace

HttpClient::HttpClient(std::string host, std::string port, int timeoutMilliseconds)
    : host(std::move(host)), port(std::move(port)), timeoutMilliseconds(timeoutMilliseconds)
{
}

bool HttpClient::fail(Failure kind, const std::string& what, int systemError)
{
    failure = kind;
    error = what + " " + host + ":" + port;
    if (systemError != 0) {
        error += ": " + lowerCase(std::strerror(systemError));
    }
    return false;
}

// Tries every address of the name in turn; the reason given is that of the last one tried.
int HttpClient::connect()
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    const int resolved = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses);
    if (resolved != 0) {
        fail(unreachable, "cannot connect to", 0);
        error += ": " + lowerCase(resolved == EAI_SYSTEM ? std::strerror(errno) : ::gai_strerror(resolved));
        return -1;
    }
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    int socket = -1;
    int systemError = 0;
    for (const addrinfo* address = addresses; address != nullptr && socket < 0; address = address->ai_next) {
        socket = connectTo(*address, deadline, systemError);
    }
    ::freeaddrinfo(addresses);
    if (socket < 0) {
        fail(unreachable, "cannot connect to", systemError);
    }
    return socket;
}

bool HttpClient::exchange(const std::string& method, const std::string& target, const std::string& body,
                          HttpReply& reply)
{
    failure = none;
    error.clear();
    reply = HttpReply();
    Socket socket(connect());
    if (socket.get() < 0) {
        return false;
    }
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    const bool literalV6 = host.find(':') != std::string::npos;
    std::string request = method + " " + target + " HTTP/1.1\r\nHost: " + (literalV6 ? "[" + host + "]" : host) +
                          ":" + port + "\r\nAccept: application/json\r\nConnection: close\r\nContent-Length: " +
                          std::to_string(body.size()) + "\r\n";
    if (!body.empty()) {
        request += "Content-Type: application/json\r\n";
    }
    request += "\r\n" + body;
    if (!sendAll(socket.get(), request, deadline)) {
        return fail(broken, "lost the connection to", errno);
    }

    std::string received;
    bool closed = false;
    std::size_t headEnd;
    while ((headEnd = received.find("\r\n\r\n")) == std::string::npos) {
        if (closed) {
            return fail(malformed, "no complete reply from", 0);
        }
        if (received.size() > maximumHeadSize) {
            return fail(malformed, "an oversized reply head from", 0);
        }
        if (!receiveSome(socket.get(), received, closed, deadline)) {
            return fail(broken, "no reply from", errno);
        }
    }
    const std::string head = received.substr(0, headEnd + 2);
    if (!parseStatusLine(head, reply)) {
        return fail(malformed, "no HTTP reply from", 0);
    }
    received.erase(0, headEnd + 4);

    // The inspector always sends Content-Length; without it the body runs to the close. Whatever follows
    // the body (the inspector may append a second reply) is left unread.
    std::string lengthText;
    unsigned long long length = maximumBodySize;
    const bool counted = findHeader(head, "Content-Length", lengthText);
    if (counted && (!parseLength(lengthText, length) || length > maximumBodySize)) {
        return fail(malformed, "a reply of bad length from", 0);
    }
    while (received.size() < length && !closed) {
        if (!receiveSome(socket.get(), received, closed, deadline)) {
            return fail(broken, "an incomplete reply from", errno);
        }
    }
    if (counted && received.size() < length) {
        return fail(malformed, "a truncated reply from", 0);
    }
    if (received.size() > length) {
        received.resize(static_cast<std::size_t>(length));
    }
    reply.body = std::move(received);
    return true;
}

} // namespace inspect
} // namespace tov
