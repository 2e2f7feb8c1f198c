#include <tov/utils/debugger/impl/HTTPServer.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/Logging.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/impl/CivetConnection.h>
#include <tov/utils/debugger/impl/EventFramework.h>

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
        HTTPServer::handleRequest(server->framework, connection);
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

void dropEventEngine(HTTPServer::Private& server)
{
    if (server.eventEngine.get() == nullptr) {
        return;
    }
    server.framework.unregisterEngine(server.eventEngine->getPath());
    server.eventEngine.reset();
}

} // namespace

HTTPServer::HTTPServer(InspectionFramework& framework) : data(TOV_NEW Private(framework)) {}

HTTPServer::~HTTPServer()
{
    stop();
}

bool HTTPServer::start(unsigned int port)
{
    return start(nullptr, port);
}

bool HTTPServer::start(const char* address, unsigned int port)
{
    AbstractLogger* logger = getLogger(*data);
    if (data->context != nullptr) {
        TOV_LOG_ERROR(logger, error::invalidOperation,
                      "The inspection HTTP server is already running on port " << data->port << ".");
        return false;
    }
    std::memset(&data->callbacks, 0, sizeof(data->callbacks));
    data->callbacks.begin_request = &onBeginRequest;
    if (logger->isLoggingInfo()) {
        data->callbacks.log_message = &onLogMessage;
    }
    data->port = port;
    OStringStream listening;
    if (address != nullptr) {
        listening << address << ':';
    }
    listening << port;
    const String listeningPorts = listening.str();
    // One worker: requests are answered one at a time, in the order in which they were accepted.
    const char* options[] = {"enable_directory_listing", "false", "listening_ports", listeningPorts.c_str(),
                             "num_threads", "1", nullptr};
    data->eventEngine.reset(TOV_NEW EventFramework(data->framework));
    // A host engine that took the path first keeps it; the framework logged the clash.
    if (!data->framework.registerEngine(*data->eventEngine)) {
        data->eventEngine.reset();
    }
    data->context = mg_start(&data->callbacks, data.get(), options);
    if (data->context == nullptr) {
        dropEventEngine(*data);
        TOV_LOG_ERROR(logger, error::unknownError, "Unable to start the inspection HTTP server on port " << port << ".");
        return false;
    }
    TOV_LOG_INFO(logger, "Inspection HTTP server started on port " << port << ".");
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
    mg_stop(data->context);
    TOV_LOG_INFO(getLogger(*data), "Inspection HTTP server stopped.");
    data->context = nullptr;
    dropEventEngine(*data);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
