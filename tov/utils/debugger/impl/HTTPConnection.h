#pragma once
// HTTPConnection: one HTTP request as the request handler sees it (method, path, query), the way to
// its body and back to its client. The server hands one per request; tests and fuzzers make their own.
//   JsonHttpReply reply(connection, logger);   // answers through connection.write
//   HTTPServer::handleRequest(framework, connection);

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class HTTPConnection {
public:
    virtual ~HTTPConnection();

    // Never null.
    virtual const char* getMethod() const = 0;
    // The decoded path of the request, "" when it has none.
    virtual const char* getPath() const = 0;
    // What follows the '?', "" when there is nothing.
    virtual const char* getQuery() const = 0;
    // The value of a request header, null when it was not sent. Connections made by tests may have none.
    virtual const char* getHeader(const char* name) const;
    // Up to `size` bytes of the body: the count, 0 at its end, negative on failure.
    virtual int read(char* buffer, unsigned int size) = 0;
    // All `size` bytes to the client: the count, negative on failure.
    virtual int write(const char* data, unsigned int size) = 0;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
