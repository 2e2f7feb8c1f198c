#pragma once
// ConfiguredRequestHandler: the configured server's way with a request. The guard looks at its headers
// first; the body is read into memory on the connection's own thread, bounded in size and time; only
// then does the request take its turn at the resources, one at a time, and its reply goes out after
// the turn. A slow client thus holds its own thread and nobody else.
//   ConfiguredRequestHandler handler(framework, settings, "127.0.0.1");
//   handler.handle(connection);   // on any connection thread

#include <tov/utils/Mutex.h>
#include <tov/utils/String.h>
#include <tov/utils/debugger/impl/RequestGuard.h>

namespace tov {
namespace utils {
namespace debugger {

class InspectionFramework;
struct HttpSettings;

namespace impl {

class HTTPConnection;

class ConfiguredRequestHandler {
public:
    ConfiguredRequestHandler(InspectionFramework& framework, const HttpSettings& settings,
                             const String& listeningHostName);
    ConfiguredRequestHandler(const ConfiguredRequestHandler&) = delete;
    ConfiguredRequestHandler& operator=(const ConfiguredRequestHandler&) = delete;

    void handle(HTTPConnection& connection);
    // A request that the server itself could not read, with the server's status and words for it.
    void refuseUnreadable(HTTPConnection& connection, unsigned int code, const char* reasonPhrase, const char* why);

private:
    // Logs the message as a warning and answers it as {"error": message}.
    void refuse(HTTPConnection& connection, const String& headerLines, unsigned int code, const char* reasonPhrase,
                const String& message, const char* extraHeaders = "");
    // OPTIONS: the methods and headers that a page of an admitted origin may use.
    void answerPreflight(HTTPConnection& connection, const String& headerLines);
    void serveResources(HTTPConnection& connection, const String& headerLines);
    // GET /ui/<file>: the web viewer's files, with an entity tag that spares a reload the bytes.
    void serveViewerFile(HTTPConnection& connection, const String& headerLines);

    InspectionFramework& framework;
    RequestGuard guard;
    unsigned int maximumBodySize;
    unsigned int requestTimeoutMilliseconds;
    bool serveViewer;
    // Engines see one request at a time, as they do behind the exact form's single worker.
    Mutex resourceLock;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
