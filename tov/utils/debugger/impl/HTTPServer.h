#pragma once
// HTTPServer: serves the resources of an InspectionFramework over HTTP. GET, POST and DELETE map to
// retrieveResource, createResource and deleteResource below a first path segment of "api" or the
// library's version; POST on "engines" switches engines on and off. The exact form answers on one
// worker thread, to anyone; the configured form (HttpSettings) reads connections on several threads,
// refuses web pages of other sites and strange host names, and explains every refusal.
//   HTTPServer server(framework);
//   server.start(HttpSettings());   // GET http://127.0.0.1:<getPort()>/api/<engine>/...
//   server.stop();

#include <tov/utils/ScopedPtr.h>

namespace tov {
namespace utils {
namespace debugger {

class InspectionFramework;
struct HttpSettings;

namespace impl {

class HTTPConnection;

class HTTPServer {
public:
    struct Private;

    // What sets the configured form's answers apart from the exact ones.
    struct RequestForm {
        // Refusals carry {"error": "<the logged sentence>"}, an unknown resource is 404 whatever the
        // method, an unsupported method 405, engine control answers once, and 500 is only for errors
        // logged while the request ran.
        bool explainRefusals;
        // Header lines sent with every reply; null for the exact form's "Access-Control-Allow-Origin: *".
        const char* replyHeaders;
        unsigned int maximumBodySize;
    };

    // Nothing starts yet.
    explicit HTTPServer(InspectionFramework& framework);
    // Stops a running server first, so that its worker never meets a framework that is gone.
    virtual ~HTTPServer();
    HTTPServer(const HTTPServer&) = delete;
    HTTPServer& operator=(const HTTPServer&) = delete;

    // Listens on every interface.
    [[nodiscard]] bool start(unsigned int port);
    // Listens on one address only (a null one stands for every interface); an address that is not one
    // address, or a port above 65535, fails the start. On port 0 getPort gives the port bound.
    [[nodiscard]] bool start(const char* address, unsigned int port);
    // The configured form.
    [[nodiscard]] bool start(const HttpSettings& settings);
    bool isStarted() const;
    // The port of the last start, failed ones included; 8000 before any.
    unsigned int getPort() const;
    // Returns once the worker has ended; must not be called from inside a resource operation.
    void stop();

    // Answers one request of `connection` from the resources of `framework`. The server calls it on
    // its worker for every request.
    static void handleRequest(InspectionFramework& framework, HTTPConnection& connection);
    static void handleRequest(InspectionFramework& framework, HTTPConnection& connection, const RequestForm& form);

private:
    ScopedPtr<Private> data;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
