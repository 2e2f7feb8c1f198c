#include "apps/inspect/HttpClient.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

namespace tov {
namespace inspect {
namespace {

// Accepts one connection on a loopback port, reads the request's head and its body by Content-Length,
// writes the scripted pieces one by one and closes. Waits are bounded by the client's time-out.
class ScriptedServer {
public:
    explicit ScriptedServer(std::vector<std::string> pieces) : listener(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address));
        ::listen(listener, 1);
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        thread = std::thread([this, pieces] { serve(pieces); });
    }
    ~ScriptedServer()
    {
        ::shutdown(listener, SHUT_RDWR);
        thread.join();
        ::close(listener);
    }

    unsigned int port = 0;
    std::string request;

private:
    void serve(const std::vector<std::string>& pieces)
    {
        const int connection = ::accept(listener, nullptr, nullptr);
        if (connection < 0) {
            return;
        }
        const timeval timeout{5, 0};
        ::setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
        char buffer[4096];
        std::size_t headEnd;
        ssize_t count = 1;
        while ((headEnd = request.find("\r\n\r\n")) == std::string::npos && count > 0) {
            count = ::recv(connection, buffer, sizeof(buffer), 0);
            request.append(buffer, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
        const std::size_t length = headEnd == std::string::npos ? 0 : request.find("Content-Length: ");
        const std::size_t wanted = length == std::string::npos ? 0 : std::stoul(request.substr(length + 16));
        while (headEnd != std::string::npos && request.size() < headEnd + 4 + wanted && count > 0) {
            count = ::recv(connection, buffer, sizeof(buffer), 0);
            request.append(buffer, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
        for (const std::string& piece : pieces) {
            ::send(connection, piece.data(), piece.size(), MSG_NOSIGNAL);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        ::close(connection);
    }

    int listener;
    std::thread thread;
};

TEST(HttpClientTest, SendsARequestWithItsLengthAndReadsTheFirstReplyOnly)
{
    ScriptedServer server({"HTTP/1.1 200 OK\r\ncontent-length:  5\r\n", "Connection: close\r\n\r\nab",
                           "cde" "HTTP/1.1 204 No Content\r\nContent-Length: 2\r\n\r\n{}"});
    HttpClient client("127.0.0.1", std::to_string(server.port), 5000);
    HttpReply reply;
    ASSERT_TRUE(client.exchange("POST", "/api/engines", "{\"a\":true}", reply)) << client.getError();
    EXPECT_EQ(200, reply.status);
    EXPECT_EQ("OK", reply.reason);
    EXPECT_EQ("abcde", reply.body);
    EXPECT_EQ("POST /api/engines HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.port) +
                  "\r\nAccept: application/json\r\nConnection: close\r\nContent-Length: 10\r\n"
                  "Content-Type: application/json\r\n\r\n{\"a\":true}",
              server.request);
}

TEST(HttpClientTest, WithoutALengthTheBodyRunsToTheClose)
{
    ScriptedServer server({"HTTP/1.0 404 Not Found\r\n\r\n", "gone", " away"});
    HttpClient client("localhost", std::to_string(server.port), 5000);
    HttpReply reply;
    ASSERT_TRUE(client.exchange("GET", "/api/x", "", reply)) << client.getError();
    EXPECT_EQ(404, reply.status);
    EXPECT_EQ("Not Found", reply.reason);
    EXPECT_EQ("gone away", reply.body);
    EXPECT_NE(std::string::npos, server.request.find("\r\nContent-Length: 0\r\n\r\n"));
}

TEST(HttpClientTest, WhatIsNoWholeReplyIsAFailureThatSaysSo)
{
    struct Case {
        std::vector<std::string> pieces;
        HttpClient::Failure failure;
        const char* error;   // behind the host and port
    };
    const Case cases[] = {
        {{}, HttpClient::malformed, "no complete reply from"},
        {{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nshort"}, HttpClient::malformed, "a truncated reply from"},
        {{"hello\r\n\r\n"}, HttpClient::malformed, "no HTTP reply from"},
        {{"HTTP/1.1 2x0 OK\r\n\r\n"}, HttpClient::malformed, "no HTTP reply from"},
        {{"HTTP/1.1 200 OK\r\nContent-Length: -1\r\n\r\n"}, HttpClient::malformed, "a reply of bad length from"},
        {{"HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\n"}, HttpClient::malformed,
         "a reply of bad length from"},
    };
    for (const Case& c : cases) {
        ScriptedServer server(c.pieces);
        HttpClient client("127.0.0.1", std::to_string(server.port), 5000);
        HttpReply reply;
        EXPECT_FALSE(client.exchange("GET", "/api/x", "", reply));
        EXPECT_EQ(c.failure, client.getFailure()) << c.error;
        EXPECT_EQ(std::string(c.error) + " 127.0.0.1:" + std::to_string(server.port), client.getError());
    }
}

TEST(HttpClientTest, ASilentServerTimesOut)
{
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address));
    ::listen(listener, 1);   // the kernel completes the connection; nobody ever answers
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    const std::string port = std::to_string(ntohs(address.sin_port));
    HttpClient client("127.0.0.1", port, 200);
    HttpReply reply;
    EXPECT_FALSE(client.exchange("GET", "/api/x", "", reply));
    EXPECT_EQ(HttpClient::broken, client.getFailure());
    EXPECT_EQ("no reply from 127.0.0.1:" + port + ": connection timed out", client.getError());
    ::close(listener);
}

} // namespace
} // namespace inspect
} // namespace tov
