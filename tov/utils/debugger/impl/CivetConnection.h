#pragma once
// CivetConnection: a request of the embedded HTTP server seen as an HTTPConnection. The one place that
// reads the server's request information.
//   int onRequest(mg_connection* raw) { CivetConnection connection(raw); ... }

#include <tov/utils/debugger/impl/HTTPConnection.h>

struct mg_connection;

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class CivetConnection : public HTTPConnection {
public:
    explicit CivetConnection(mg_connection* connection);

    const char* getMethod() const override;
    const char* getPath() const override;
    const char* getQuery() const override;
    const char* getHeader(const char* name) const override;
    int read(char* buffer, unsigned int size) override;
    int write(const char* data, unsigned int size) override;

    // The user data given to the server at start, or null. Also for the stand-in connections that the
    // server logs through while it starts, which carry no request information.
    static void* getUserData(const mg_connection* connection);

private:
    mg_connection* connection;
    const char* method;
    const char* path;
    const char* query;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
