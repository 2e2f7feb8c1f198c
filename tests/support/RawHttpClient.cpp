#include "support/RawHttpClient.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace tov {
namespace testing {

namespace {

sockaddr_in loopback(unsigned int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<unsigned short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

std::string HttpReply::header(const std::string& name) const
{
    const std::size_t start = head.find("\r\n" + name + ": ");
    if (start == std::string::npos) {
        return "";
    }
    const std::size_t value = start + name.size() + 4;
    return head.substr(value, head.find("\r\n", value) - value);
}

unsigned int findFreePort()
{
    const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof(address);
    const bool bound = ::bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 &&
                       ::getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(probe);
    return bound ? ntohs(address.sin_port) : 0;
}

RawHttpClient::RawHttpClient(unsigned int port, int timeoutMilliseconds)
    : port(port), timeoutMilliseconds(timeoutMilliseconds)
{
}

RawHttpClient::~RawHttpClient()
{
    if (socket >= 0) {
        ::close(socket);
    }
}

// The time-outs bound connect (on Linux), every send and every receive.
bool RawHttpClient::connect()
{
    socket = ::socket(AF_INET, SOCK_STREAM, 0);
    const timeval timeout{timeoutMilliseconds / 1000, (timeoutMilliseconds % 1000) * 1000};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
    ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof(timeout));
    const sockaddr_in address = loopback(port);
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

bool RawHttpClient::send(const std::string& bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::string RawHttpClient::receiveAll(bool* closed)
{
    std::string received;
    char buffer[65536];
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    ssize_t count = 1;
    while (count > 0 && std::chrono::steady_clock::now() < deadline) {
        count = ::recv(socket, buffer, sizeof(buffer), 0);
        if (count > 0) {
            received.append(buffer, static_cast<std::size_t>(count));
        }
    }
    if (closed != nullptr) {
        // 0 is an orderly close; a reset (ECONNRESET) comes from a server that closed without reading all.
        *closed = count == 0 || (count < 0 && errno == ECONNRESET);
    }
    return received;
}

std::string RawHttpClient::exchange(unsigned int port, const std::string& request, int timeoutMilliseconds)
{
    RawHttpClient client(port, timeoutMilliseconds);
    if (!client.connect()) {
        return "";
    }
    client.send(request); // the server may answer and close before it has read everything
    return client.receiveAll();
}

std::vector<HttpReply> RawHttpClient::parseReplies(const std::string& raw)
{
    std::vector<HttpReply> replies;
    for (std::size_t position = 0, headEnd; (headEnd = raw.find("\r\n\r\n", position)) != std::string::npos;) {
        HttpReply reply;
        reply.head = raw.substr(position, headEnd + 2 - position);
        reply.status = std::atoi(reply.head.c_str() + reply.head.find(' ') + 1);
        position = headEnd + 4;
        const std::string length = reply.header("Content-Length");
        reply.body = raw.substr(position, length.empty() ? std::string::npos : std::stoul(length));
        position += reply.body.size();
        replies.push_back(reply);
    }
    return replies;
}

} // namespace testing
} // namespace tov
