#include "support/RawHttpClient.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
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
    const std::string key = "\r\n" + name + ": ";
    const std::size_t start = head.find(key);
    if (start == std::string::npos) {
        return "";
    }
    const std::size_t valueStart = start + key.size();
    const std::size_t end = head.find("\r\n", valueStart);
    return head.substr(valueStart, end == std::string::npos ? std::string::npos : end - valueStart);
}

unsigned int findFreePort()
{
    const int probe = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof(address);
    unsigned int port = 0;
    if (::bind(probe, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 &&
        ::getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0) {
        port = ntohs(address.sin_port);
    }
    ::close(probe);
    return port;
}

RawHttpClient::RawHttpClient(unsigned int port, int timeoutMilliseconds)
    : port(port), timeoutMilliseconds(timeoutMilliseconds), socket(-1)
{
}

RawHttpClient::~RawHttpClient()
{
    close();
}

bool RawHttpClient::wait(short events)
{
    pollfd descriptor{socket, events, 0};
    return ::poll(&descriptor, 1, timeoutMilliseconds) == 1;
}

bool RawHttpClient::connect()
{
    close();
    socket = ::socket(AF_INET, SOCK_STREAM, 0);
    if (socket < 0) {
        return false;
    }
    ::fcntl(socket, F_SETFL, ::fcntl(socket, F_GETFL) | O_NONBLOCK);
    const sockaddr_in address = loopback(port);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
        return true;
    }
    if (errno != EINPROGRESS || !wait(POLLOUT)) {
        return false;
    }
    int error = 0;
    socklen_t size = sizeof(error);
    ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size);
    return error == 0;
}

bool RawHttpClient::send(const std::string& bytes)
{
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count > 0) {
            sent += static_cast<std::size_t>(count);
        } else if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            if (!wait(POLLOUT)) {
                return false;
            }
        } else {
            return false;
        }
    }
    return true;
}

std::string RawHttpClient::receiveAll(bool* closed)
{
    std::string received;
    char buffer[65536];
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMilliseconds);
    bool ended = false;
    while (!ended && std::chrono::steady_clock::now() < deadline) {
        pollfd descriptor{socket, POLLIN, 0};
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (::poll(&descriptor, 1, static_cast<int>(left.count()) + 1) != 1) {
            break;
        }
        const ssize_t count = ::recv(socket, buffer, sizeof(buffer), 0);
        if (count > 0) {
            received.append(buffer, static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR)) {
            ended = true;   // closed, or reset by a server that stopped reading
        }
    }
    if (closed != nullptr) {
        *closed = ended;
    }
    return received;
}

void RawHttpClient::close()
{
    if (socket >= 0) {
        ::close(socket);
        socket = -1;
    }
}

std::string RawHttpClient::exchange(unsigned int port, const std::string& request, int timeoutMilliseconds)
{
    RawHttpClient client(port, timeoutMilliseconds);
    if (!client.connect()) {
        return "";
    }
    client.send(request);   // a server may answer and close before it has read everything
    return client.receiveAll();
}

std::vector<HttpReply> RawHttpClient::parseReplies(const std::string& raw)
{
    std::vector<HttpReply> replies;
    std::size_t position = 0;
    while (position < raw.size()) {
        const std::size_t headEnd = raw.find("\r\n\r\n", position);
        if (headEnd == std::string::npos) {
            break;
        }
        HttpReply reply;
        reply.head = raw.substr(position, headEnd + 2 - position);
        const std::size_t space = reply.head.find(' ');
        reply.status = space == std::string::npos ? 0 : std::atoi(reply.head.c_str() + space + 1);
        position = headEnd + 4;
        const std::string length = reply.header("Content-Length");
        const std::size_t bodySize = length.empty() ? raw.size() - position : std::stoul(length);
        reply.body = raw.substr(position, bodySize);
        position += reply.body.size();
        replies.push_back(reply);
    }
    return replies;
}

} // namespace testing
} // namespace tov
