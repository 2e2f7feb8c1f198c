#pragma once
// HTTPServer: serves the resources of an InspectionFramework over HTTP, with one worker thread that
// answers requests one at a time. GET, POST and DELETE map to retrieveResource, createResource and
// deleteResource below a first path segment of "api" or the library's version; POST on "engines"
// switches engines on and off.
//   HTTPServer server(framework);
//   server.start("127.0.0.1", 8000);   // GET http://127.0.0.1:8000/api/<engine>/...
//   server.stop();

#include <tov/utils/Export.h>
#include <tov/utils/ScopedPtr.h>

namespace tov {
namespace utils {
namespace debugger {

class InspectionFramework;

namespace impl {

class HTTPConnection;

class TOV_UTILS_API HTTPServer {
public:
    struct Private;

    // Nothing starts yet.
    explicit HTTPServer(InspectionFramework& framework);
    // Stops a running server first, so that its worker never meets a framework that is gone.
    virtual ~HTTPServer();
    HTTPServer(const HTTPServer&) = delete;
    HTTPServer& operator=(const HTTPServer&) = delete;

    // Listens on every interface.
    bool start(unsigned int port);
    // Listens on one address only (a null one stands for every interface).
    bool start(const char* address, unsigned int port);
    bool isStarted() const;
    // The port of the last start, failed ones included; 8000 before any.
    unsigned int getPort() const;
    // Returns once the worker has ended; must not be called from inside a resource operation.
    void stop();

    // Answers one request of `connection` from the resources of `framework`. The server calls it on
    // its worker for every request.
    static void handleRequest(InspectionFramework& framework, HTTPConnection& connection);

private:
    ScopedPtr<Private> data;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
