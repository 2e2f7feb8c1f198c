#pragma once
// HttpClient: the few HTTP/1.1 requests the tour makes to the inspector, one connection per request
// (the inspector closes every connection after its reply), each bounded in time.
//   HttpClient client("127.0.0.1", 8000);
//   HttpClient::Reply reply = client.send("GET", "/api/debug/entities");   // reply.status == 200

#include <string>

namespace demo {

class HttpClient {
public:
    struct Reply {
        int status = 0;   // 0: no answer
        std::string body;
    };

    HttpClient(std::string address, unsigned int port, int timeoutMilliseconds = 5000);

    Reply send(const std::string& method, const std::string& path, const std::string& body = "") const;

    // Only the first reply of a connection counts: a switch of engines answers twice.
    static Reply parse(const std::string& raw);

private:
    std::string address;
    unsigned int port;
    int timeoutMilliseconds;
};

} // namespace demo
