#include <tov/utils/debugger/impl/ConfiguredRequestHandler.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/Logging.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/debugger/HttpSettings.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/impl/BufferedConnection.h>
#include <tov/utils/debugger/impl/HTTPServer.h>
#include <tov/utils/debugger/impl/JsonHttpReply.h>
#include <tov/utils/debugger/impl/ViewerFiles.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

ConfiguredRequestHandler::ConfiguredRequestHandler(InspectionFramework& framework, const HttpSettings& settings,
                                                   const String& listeningHostName)
    : framework(framework), guard(settings, listeningHostName), maximumBodySize(settings.maximumBodySize),
      requestTimeoutMilliseconds(settings.requestTimeoutMilliseconds), serveViewer(settings.serveViewer)
{
}

namespace {

const char viewerPrefix[] = "/ui";
const unsigned int viewerPrefixLength = sizeof(viewerPrefix) - 1;

bool isViewerPath(const char* path)
{
    return std::strncmp(path, viewerPrefix, viewerPrefixLength) == 0 &&
           (path[viewerPrefixLength] == '\0' || path[viewerPrefixLength] == '/');
}

} // namespace

// The order matters: a page of another site is refused before anything else, a preflight carries no
// credentials and is answered before the token is asked for, the viewer's files hold no secret and need
// no token (the page asks for one), and the body is read before the turn.
void ConfiguredRequestHandler::handle(HTTPConnection& connection)
{
    const char* origin = connection.getHeader("Origin");
    const RequestGuard::Verdict admission = guard.admit(connection.getHeader("Host"), origin);
    if (admission.code != 0) {
        refuse(connection, guard.getCorsHeaders(nullptr), admission.code, "Forbidden", admission.message);
        return;
    }
    const String headerLines = guard.getCorsHeaders(origin);
    if (std::strcmp(connection.getMethod(), "OPTIONS") == 0) {
        answerPreflight(connection, headerLines);
        return;
    }
    if (serveViewer && isViewerPath(connection.getPath())) {
        serveViewerFile(connection, headerLines);
        return;
    }
    const RequestGuard::Verdict authorization = guard.authorize(connection.getHeader("Authorization"));
    if (authorization.code != 0) {
        refuse(connection, headerLines, authorization.code, "Unauthorized", authorization.message,
               "WWW-Authenticate: Bearer\r\n");
        return;
    }
    serveResources(connection, headerLines);
}

void ConfiguredRequestHandler::refuseUnreadable(HTTPConnection& connection, unsigned int code, const char* reasonPhrase,
                                                const char* why)
{
    refuse(connection, guard.getCorsHeaders(nullptr), code, reasonPhrase,
           "HTTP request: the server refused the request (" + String(why != nullptr ? why : "") + ").");
}

void ConfiguredRequestHandler::serveResources(HTTPConnection& connection, const String& headerLines)
{
    BufferedConnection buffered(connection);
    switch (buffered.readBody(maximumBodySize, requestTimeoutMilliseconds)) {
    case BufferedConnection::Complete:
        break;
    case BufferedConnection::TooLarge: {
        OStringStream message;
        message << "HTTP request: the body is longer than " << maximumBodySize << " bytes.";
        refuse(connection, headerLines, 413, "Payload Too Large", message.str());
        return;
    }
    case BufferedConnection::TooSlow: {
        OStringStream message;
        message << "HTTP request: the body did not arrive within " << requestTimeoutMilliseconds << " ms.";
        refuse(connection, headerLines, 408, "Request Timeout", message.str());
        return;
    }
    case BufferedConnection::Broken:
        refuse(connection, headerLines, 400, "Bad Request", "HTTP request: the body could not be read.");
        return;
    }
    const HTTPServer::RequestForm form = {true, headerLines.c_str(), maximumBodySize};
    {
        ScopedMutex turn(resourceLock);
        HTTPServer::handleRequest(framework, buffered, form);
    }
    buffered.flush();
}

void ConfiguredRequestHandler::serveViewerFile(HTTPConnection& connection, const String& headerLines)
{
    const char* path = connection.getPath();
    if (std::strcmp(connection.getMethod(), "GET") != 0) {
        refuse(connection, headerLines, 405, "Method Not Allowed",
               "HTTP request: '" + String(connection.getMethod()) + "' is not a supported method of the viewer.",
               "Allow: GET\r\n");
        return;
    }
    OStringStream head;
    // "/ui" alone: the page's relative links need the folder's slash.
    if (path[viewerPrefixLength] == '\0') {
        head << "HTTP/1.1 308 Permanent Redirect\r\nLocation: /ui/\r\nContent-Length: 0\r\nConnection: close\r\n"
             << headerLines << "\r\n";
        const String text = head.str();
        connection.write(text.data(), static_cast<unsigned int>(text.size()));
        return;
    }
    const char* name = path + viewerPrefixLength + 1;
    ViewerFile file;
    if (!ViewerFiles::find(name, file)) {
        refuse(connection, headerLines, 404, "Not Found",
               "HTTP request: the viewer has no file '" + String(path) + "'.");
        return;
    }
    const char* known = connection.getHeader("If-None-Match");
    const bool unchanged = known != nullptr && std::strcmp(known, file.etag) == 0;
    // The page may load nothing from elsewhere and may not be framed by another site's page.
    head << "HTTP/1.1 " << (unchanged ? "304 Not Modified" : "200 OK") << "\r\n"
         << "Content-Type: " << file.type << "\r\n"
         << "Content-Length: " << (unchanged ? 0 : file.size) << "\r\n"
         << "ETag: " << file.etag << "\r\n"
         << "Cache-Control: no-cache\r\n"
         << "X-Content-Type-Options: nosniff\r\n"
         << "Content-Security-Policy: default-src 'self'; frame-ancestors 'none'; base-uri 'none'; form-action "
            "'none'\r\n"
         << "Referrer-Policy: no-referrer\r\n"
         << "Connection: close\r\n"
         << headerLines << "\r\n";
    String reply = head.str();
    if (!unchanged) {
        reply.append(reinterpret_cast<const char*>(file.bytes), file.size);
    }
    connection.write(reply.data(), static_cast<unsigned int>(reply.size()));
}

void ConfiguredRequestHandler::refuse(HTTPConnection& connection, const String& headerLines, unsigned int code,
                                      const char* reasonPhrase, const String& message, const char* extraHeaders)
{
    AbstractLogger* logger = &framework.getFacilities().getLogger();
    TOV_LOG_WARNING(logger, message);
    JsonHttpReply reply(connection, logger, headerLines.c_str());
    reply.sendError(code, reasonPhrase, message, extraHeaders);
}

void ConfiguredRequestHandler::answerPreflight(HTTPConnection& connection, const String& headerLines)
{
    JsonHttpReply reply(connection, &framework.getFacilities().getLogger(), headerLines.c_str());
    reply.sendStatus(204, "No Content",
                     "Allow: GET, POST, DELETE, OPTIONS\r\n"
                     "Access-Control-Allow-Methods: GET, POST, DELETE, OPTIONS\r\n"
                     "Access-Control-Allow-Headers: Authorization, Content-Type\r\n"
                     "Access-Control-Max-Age: 600\r\n");
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
