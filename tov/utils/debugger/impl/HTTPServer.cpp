#include <tov/utils/debugger/impl/HTTPServer.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/Logging.h>
#include <tov/utils/debugger/HttpSettings.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/impl/CivetConnection.h>
#include <tov/utils/debugger/impl/ConfiguredRequestHandler.h>
#include <tov/utils/debugger/impl/EventFramework.h>
#include <tov/utils/debugger/impl/ListeningAddress.h>
#include <tov/utils/debugger/impl/ListeningSockets.h>

#include <civetweb.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

struct HTTPServer::Private {
    explicit Private(InspectionFramework& framework) : framework(framework), port(8000), context(nullptr)
    {
        std::memset(&callbacks, 0, sizeof(callbacks));
    }

    InspectionFramework& framework;
    unsigned int port;
    // Null while stopped.
    mg_context* context;
    mg_callbacks callbacks;
    // The "events" tree exists only while the server runs, each run with a fresh queue.
    ScopedPtr<EventFramework> eventEngine;
    // Set while the configured form runs; the exact form answers without it.
    ScopedPtr<ConfiguredRequestHandler> configured;
};

namespace {

AbstractLogger* getLogger(const HTTPServer::Private& server)
{
    return &server.framework.getFacilities().getLogger();
}

// Every request is answered here; returning 1 tells the server that it has nothing left to do, so that
// it never serves a file or a listing of its own.
int onBeginRequest(mg_connection* rawConnection)
{
    HTTPServer::Private* server = static_cast<HTTPServer::Private*>(CivetConnection::getUserData(rawConnection));
    if (server != nullptr) {
        CivetConnection connection(rawConnection);
        if (server->configured.get() != nullptr) {
            server->configured->handle(connection);
        } else {
            HTTPServer::handleRequest(server->framework, connection);
        }
    }
    return 1;
}

int onLogMessage(const mg_connection* rawConnection, const char* message)
{
    HTTPServer::Private* server = static_cast<HTTPServer::Private*>(CivetConnection::getUserData(rawConnection));
    TOV_ASSERT(server != nullptr, "No set user data while receiving log message from mongoose: " << message);
    if (server == nullptr) {
        return 0;
    }
    TOV_LOG_INFO(getLogger(*server), message);
    return 1;
}

// The configured form answers the server's own refusals (a request it cannot read) in JSON too.
int onHttpError(mg_connection* rawConnection, int status, const char* message)
{
    HTTPServer::Private* server = static_cast<HTTPServer::Private*>(CivetConnection::getUserData(rawConnection));
    if (server == nullptr || server->configured.get() == nullptr) {
        return 1;
    }
    CivetConnection connection(rawConnection);
    server->configured->refuseUnreadable(connection, static_cast<unsigned int>(status),
                                         mg_get_response_code_text(rawConnection, status), message);
    return 0;
}

void dropEventEngine(HTTPServer::Private& server)
{
    if (server.eventEngine.get() == nullptr) {
        return;
    }
    server.framework.unregisterEngine(server.eventEngine->getPath());
    server.eventEngine.reset();
}

// The port that the system chose for a start on port 0.
unsigned int findBoundPort(const mg_context* context, unsigned int requested)
{
    mg_server_port ports[1];
    if (requested == 0 && mg_get_server_ports(context, 1, ports) == 1) {
        return static_cast<unsigned int>(ports[0].port);
    }
    return requested;
}

bool refuseWhileRunning(const HTTPServer::Private& server)
{
    if (server.context == nullptr) {
        return false;
    }
    TOV_LOG_ERROR(getLogger(server), error::invalidOperation,
                  "The inspection HTTP server is already running on port " << server.port << ".");
    return true;
}

// Common to both forms once the options are known: the event engine, the server, the messages.
// `learnBoundPort`: on port 0 keep the port that the system chose instead of the 0 asked for.
bool launch(HTTPServer::Private& server, const char** options, unsigned int port, bool learnBoundPort)
{
    AbstractLogger* logger = getLogger(server);
    std::memset(&server.callbacks, 0, sizeof(server.callbacks));
    server.callbacks.begin_request = &onBeginRequest;
    if (server.configured.get() != nullptr) {
        server.callbacks.http_error = &onHttpError;
    }
    if (logger->isLoggingInfo()) {
        server.callbacks.log_message = &onLogMessage;
    }
    server.eventEngine.reset(TOV_NEW EventFramework(server.framework));
    // A host engine that took the path first keeps it; the framework logged the clash.
    if (!server.framework.registerEngine(*server.eventEngine)) {
        server.eventEngine.reset();
    }
    server.context = mg_start(&server.callbacks, &server, options);
    if (server.context == nullptr) {
        dropEventEngine(server);
        server.configured.reset();
        TOV_LOG_ERROR(logger, error::unknownError,
                      "Unable to start the inspection HTTP server on port " << port << ".");
        return false;
    }
    if (learnBoundPort) {
        server.port = findBoundPort(server.context, port);
    }
    TOV_LOG_INFO(logger, "Inspection HTTP server started on port " << server.port << ".");
    return true;
}

// An address that the server could not listen on, or one that it would read as something wider.
bool refuseAddress(HTTPServer::Private& server, ListeningAddress& address, const char* text, unsigned int port)
{
    server.port = port;
    if (!address.parse(text, port)) {
        TOV_LOG_ERROR(getLogger(server), error::invalidArgument, address.getProblem());
        return true;
    }
    if (address.isIPv6() && mg_check_feature(8) == 0) {
        TOV_LOG_ERROR(getLogger(server), error::invalidArgument,
                      "The inspection HTTP server cannot listen on '" << text << "': it was built without IPv6.");
        return true;
    }
    return false;
}

} // namespace

HTTPServer::HTTPServer(InspectionFramework& framework) : data(TOV_NEW Private(framework)) {}

HTTPServer::~HTTPServer()
{
    stop();
}

bool HTTPServer::start(unsigned int port)
{
    if (refuseWhileRunning(*data)) {
        return false;
    }
    data->port = port;
    OStringStream listening;
    listening << port;
    const String listeningPorts = listening.str();
    // One worker: requests are answered one at a time, in the order in which they were accepted.
    const char* options[] = {
        "enable_directory_listing", "false", "listening_ports", listeningPorts.c_str(), "num_threads", "1", nullptr};
    return launch(*data, options, port, false);
}

bool HTTPServer::start(const char* address, unsigned int port)
{
    if (address == nullptr) {
        return start(port);
    }
    ListeningAddress listening;
    if (refuseWhileRunning(*data) || refuseAddress(*data, listening, address, port)) {
        return false;
    }
    const char* options[] = {"enable_directory_listing",
                             "false",
                             "listening_ports",
                             listening.getListeningPorts().c_str(),
                             "num_threads",
                             "1",
                             nullptr};
    return launch(*data, options, port, true);
}

bool HTTPServer::start(const HttpSettings& settings)
{
    ListeningAddress listening;
    if (refuseWhileRunning(*data) || refuseAddress(*data, listening, settings.address.c_str(), settings.port)) {
        return false;
    }
    OStringStream threads;
    threads << (settings.connectionThreads != 0 ? settings.connectionThreads : 1);
    OStringStream timeout;
    timeout << (settings.requestTimeoutMilliseconds != 0 ? settings.requestTimeoutMilliseconds : 1);
    const String threadCount = threads.str();
    const String timeoutText = timeout.str();
    const char* options[] = {"enable_directory_listing",
                             "false",
                             "listening_ports",
                             listening.getListeningPorts().c_str(),
                             "num_threads",
                             threadCount.c_str(),
                             "request_timeout_ms",
                             timeoutText.c_str(),
                             nullptr};
    data->configured.reset(TOV_NEW ConfiguredRequestHandler(data->framework, settings, listening.getHostName()));
    if (!launch(*data, options, settings.port, true)) {
        return false;
    }
    ListeningSockets::deferAcceptUntilData(data->port, (settings.requestTimeoutMilliseconds + 999) / 1000);
    if (!listening.isLoopback() && settings.accessToken.empty()) {
        TOV_LOG_WARNING(getLogger(*data), "The inspection HTTP server listens on "
                                              << settings.address
                                              << " without an access token: "
                                                 "anyone who can reach this machine on port "
                                              << data->port
                                              << " can read the simulation, "
                                                 "stop and step its threads and switch its engines.");
    }
    return true;
}

bool HTTPServer::isStarted() const
{
    return data->context != nullptr;
}

unsigned int HTTPServer::getPort() const
{
    return data->port;
}

void HTTPServer::stop()
{
    if (data->context == nullptr) {
        return;
    }
    // A start on port 0 with the exact form keeps 0 as its port: the bound one is asked for here.
    ListeningSockets::shutDown(findBoundPort(data->context, 0));
    mg_stop(data->context);
    TOV_LOG_INFO(getLogger(*data), "Inspection HTTP server stopped.");
    data->context = nullptr;
    data->configured.reset();
    dropEventEngine(*data);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
