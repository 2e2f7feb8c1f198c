#include "HttpClient.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>

namespace demo {

namespace {

// The value of a header in `head`, matched without regard to case; "" when absent.
std::string headerValue(const std::string& head, const char* name)
{
    const std::size_t nameLength = std::strlen(name);
    std::size_t line = head.find("\r\n");
    while (line != std::string::npos && line + 2 < head.size()) {
        const std::size_t start = line + 2;
        const std::size_t end = head.find("\r\n", start);
        const std::string text = head.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (text.size() > nameLength && text[nameLength] == ':' && strncasecmp(text.c_str(), name, nameLength) == 0) {
            std::size_t value = nameLength + 1;
            while (value < text.size() && text[value] == ' ') {
                ++value;
            }
            return text.substr(value);
        }
        line = end;
    }
    return std::string();
}

class Socket {
public:
    Socket() : fd(::socket(AF_INET, SOCK_STREAM, 0)) {}
    ~Socket()
    {
        if (fd >= 0) {
            ::close(fd);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    int fd;
};

} // namespace

HttpClient::HttpClient(std::string address, unsigned int port, int timeoutMilliseconds)
    : address(std::move(address)), port(port), timeoutMilliseconds(timeoutMilliseconds)
{
}

HttpClient::Reply HttpClient::parse(const std::string& raw)
{
    Reply reply;
    const std::size_t headEnd = raw.find("\r\n\r\n");
    if (raw.compare(0, 9, "HTTP/1.1 ") != 0 && raw.compare(0, 9, "HTTP/1.0 ") != 0) {
        return reply;
    }
    if (headEnd == std::string::npos) {
        return reply;
    }
    reply.status = std::atoi(raw.c_str() + 9);
    const std::string head = raw.substr(0, headEnd + 2);
    const std::string length = headerValue(head, "Content-Length");
    std::size_t size = raw.size() - (headEnd + 4);
    if (!length.empty()) {
        size = std::min<std::size_t>(size, std::strtoul(length.c_str(), nullptr, 10));
    }
    reply.body = raw.substr(headEnd + 4, size);
    return reply;
}

HttpClient::Reply HttpClient::send(const std::string& method, const std::string& path, const std::string& body) const
{
    Socket connection;
    if (connection.fd < 0) {
        return Reply();
    }
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(static_cast<unsigned short>(port));
    // The inspector listens on one IPv4 address; when it listens on all of them, loopback reaches it.
    if (address == "0.0.0.0" || ::inet_pton(AF_INET, address.c_str(), &at.sin_addr) != 1) {
        at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    }
    if (::connect(connection.fd, reinterpret_cast<sockaddr*>(&at), sizeof at) != 0) {
        return Reply();
    }
    std::string request = method + " " + path + " HTTP/1.1\r\nHost: " + address + "\r\nConnection: close\r\n";
    request += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    std::size_t sent = 0;
    while (sent < request.size()) {
        const ssize_t count = ::send(connection.fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return Reply();
        }
        sent += static_cast<std::size_t>(count);
    }
    std::string raw;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    char buffer[4096];
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            break;
        }
        pollfd wait{connection.fd, POLLIN, 0};
        if (::poll(&wait, 1, static_cast<int>(left.count())) <= 0) {
            break;
        }
        const ssize_t count = ::recv(connection.fd, buffer, sizeof buffer, 0);
        if (count <= 0) {
            break;
        }
        raw.append(buffer, static_cast<std::size_t>(count));
    }
    return parse(raw);
}

} // namespace demo
