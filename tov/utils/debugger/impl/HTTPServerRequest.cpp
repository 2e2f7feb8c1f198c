// The request handler of HTTPServer: from method, path, query and body to a resource operation of the
// framework and its answer.

#include <tov/utils/debugger/impl/HTTPServer.h>

#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectBuilder.h>
#include <tov/utils/DynamicObjectIterator.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/JsonSerialization.h>
#include <tov/utils/Logging.h>
#include <tov/utils/System.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/impl/HTTPConnection.h>
#include <tov/utils/debugger/impl/HTTPLinkInput.h>
#include <tov/utils/debugger/impl/JsonHttpReply.h>
#include <tov/utils/debugger/impl/PathSegment.h>
#include <tov/utils/debugger/impl/WarningLogger.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

enum class Method { Get, Post, Delete, Options, Unknown };

Method classifyMethod(const char* method)
{
    if (std::strcmp(method, "GET") == 0) {
        return Method::Get;
    }
    if (std::strcmp(method, "POST") == 0) {
        return Method::Post;
    }
    if (std::strcmp(method, "DELETE") == 0) {
        return Method::Delete;
    }
    if (std::strcmp(method, "OPTIONS") == 0) {
        return Method::Options;
    }
    return Method::Unknown;
}

// The JSON reader's time grows with the square of a token that spans its 256-byte pieces (a 1 MiB
// number takes seconds), and the server has one worker: bodies beyond this size are refused.
// QUIRK(exact-form-open): the exact form (startHttp with a port, or an address) runs one worker, reads
// a body up to this size and checks nobody who asks: hosts and clients of that form rely on it as it is,
// and the configured form (HttpSettings) is where those checks live.
const HTTPServer::RequestForm exactForm = {false, nullptr, 256 * 1024};

const char optionsReply[] = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\nAllow: GET,OPTIONS,POST,DELETE\r\n\r\n";

// The configured form lists the engines at "engines", named in full: a prefix could be another
// engine's ("e" of "events").
bool isEngineList(const char* rest, unsigned int length)
{
    static const char list[] = "/engines";
    return length == sizeof(list) - 1 && std::strncmp(rest, list, length) == 0;
}

// The verb of the messages of one method, and the status of a resource that no engine knows.
struct Operation {
    const char* verb;
    unsigned int unknownStatus;
};

const char allowedMethods[] = "Allow: GET, POST, DELETE, OPTIONS\r\n";

class RequestContext {
public:
    RequestContext(InspectionFramework& framework, HTTPConnection& connection, const HTTPServer::RequestForm& form)
        : framework(framework), connection(connection), form(form), logger(&framework.getFacilities().getLogger()),
          reply(connection, logger, form.replyHeaders), path(connection.getPath()), query(connection.getQuery()),
          pathLength(static_cast<unsigned int>(std::strlen(path))),
          queryLength(static_cast<unsigned int>(std::strlen(query)))
    {
    }

    void handle();

private:
    void handleResourceRequest(Method method, const char* rest, unsigned int restLength);
    bool readBody();
    void controlEngines();
    // Answers what an engine gave: 200 (500 while the facilities' logger holds an error), 400 for a
    // failed operation, `unknownStatus` for no resource.
    void answer(resources::Status status, const Operation& operation, const char* rest, bool errorsBefore);
    // Logs `message` as a warning and answers with the status; the configured form tells the message.
    void refuse(unsigned int statusIndex, const String& message, const char* extraHeaders = "");
    String describeResource(const char* rest) const;

    InspectionFramework& framework;
    HTTPConnection& connection;
    const HTTPServer::RequestForm& form;
    AbstractLogger* logger;
    JsonHttpReply reply;
    DynamicObject object;
    const char* path;
    const char* query;
    unsigned int pathLength;
    unsigned int queryLength;
};

void RequestContext::handle()
{
    const char* methodText = connection.getMethod();
    TOV_LOG_TRACE(logger, "HTTP request:\n\t-method '" << methodText << "'\n\t-path: '" << path << "'\n\t-query: '"
                                                       << query << "'");
    const Method method = classifyMethod(methodText);
    if (method == Method::Unknown) {
        const String message = "HTTP request: '" + String(methodText) + "' is not a supported method.";
        if (form.explainRefusals) {
            refuse(JsonHttpReply::MethodNotAllowed, message, allowedMethods);
        } else {
            refuse(JsonHttpReply::BadRequest, message);
        }
        return;
    }
    if (method == Method::Options) {
        // The whole answer to OPTIONS. The checks below still run, and a bad path or query appends its
        // own reply behind this one.
        connection.write(optionsReply, sizeof(optionsReply) - 1);
    }
    PathSegment segment;
    if (!segment.take(path, pathLength)) {
        refuse(JsonHttpReply::BadRequest, "HTTP request: '" + String(path) + "' is not a valid path.");
        return;
    }
    const unsigned int missingStatus =
        method == Method::Get || form.explainRefusals ? JsonHttpReply::NotFound : JsonHttpReply::NoContent;
    // Any prefix of "api" or of the version (the empty one too) selects the interface.
    if (!segment.selects("api") && !segment.selects(getVersionTOV_UTILS())) {
        refuse(missingStatus, "HTTP request: '" + String(path) + "' is not a supported path.");
        return;
    }
    DynamicObjectBuilder queryBuilder(object);
    if (!Uri::parseQuery(query, queryLength, queryBuilder)) {
        refuse(missingStatus, "HTTP request: '" + String(query) + "' is not a valid query.");
        return;
    }
    handleResourceRequest(method, path + segment.rest, pathLength - segment.rest);
}

void RequestContext::handleResourceRequest(Method method, const char* rest, unsigned int restLength)
{
    // The configured form tells a client that nothing is there, whatever the method.
    const unsigned int unknownStatus = form.explainRefusals ? JsonHttpReply::NotFound : JsonHttpReply::NoContent;
    const Operation retrieving = {"retrieving", JsonHttpReply::NotFound};
    const Operation creating = {"creating", unknownStatus};
    const Operation deleting = {"deleting", unknownStatus};
    AbstractObjectBuilder& builder = reply.getObjectBuilder();
    const bool errorsBefore = logger->hasErrors();
    switch (method) {
    case Method::Get:
        if (form.explainRefusals && isEngineList(rest, restLength)) {
            framework.describeEngines(builder);
            reply.sendStatus(JsonHttpReply::Ok);
            return;
        }
        answer(framework.retrieveResource(rest, restLength, &object, builder), retrieving, rest, errorsBefore);
        return;
    case Method::Post: {
        if (!readBody()) {
            return;
        }
        PathSegment segment;
        if (segment.take(rest, restLength) && segment.selects("engines")) {
            controlEngines();
            return;
        }
        answer(framework.createResource(rest, restLength, &object, builder), creating, rest, errorsBefore);
        return;
    }
    case Method::Delete:
        answer(framework.deleteResource(rest, restLength, &object, builder), deleting, rest, errorsBefore);
        return;
    case Method::Options:
        // OPTIONS on a good path with a good query: its answer went out above. Any client can send it,
        // so it must not reach the assertion below, whose default would end the host.
        return;
    case Method::Unknown:
        break;
    }
    TOV_ASSERT(false, "unknown request, should have been handled before");
}

// The JSON body joins the query's values in one object. What the reader reports is the client's
// fault: it goes to the facilities' logger as warnings, so that the logger is not marked with an error.
bool RequestContext::readBody()
{
    HTTPLinkInput body(connection, form.maximumBodySize);
    WarningLogger relaxed(*logger);
    if (!deserializeDynamicObjectFromJson(object, body, &relaxed) || relaxed.hasErrors()) {
        refuse(JsonHttpReply::BadRequest, "HTTP request: invalid request data (see above for further information).");
        return false;
    }
    return true;
}

// Each top-level key names an engine: an integer (0 or not) or a boolean switches it off or on; values
// of other kinds are passed over.
void RequestContext::controlEngines()
{
    for (DynamicObjectIterator iterator(object, 0, 0); !iterator.end(); iterator.next()) {
        // The walk starts with the root itself, which is no key.
        if (iterator.getKeyLength() == 0) {
            continue;
        }
        const unsigned int property = iterator.getProperty();
        bool enable = false;
        switch (object.getType(property)) {
        case type::integer:
            enable = object.getInt(property) != 0;
            break;
        case type::boolean:
            enable = object.getBool(property);
            break;
        default:
            continue;
        }
        if (enable) {
            framework.enableEngine(iterator.getKey());
        } else {
            framework.disableEngine(iterator.getKey());
        }
    }
    AbstractObjectBuilder& builder = reply.getObjectBuilder();
    builder.begin();
    builder.beginObject();
    builder.endObject();
    builder.end();
    reply.sendStatus(JsonHttpReply::Ok);
    // QUIRK(engines-post-answers-twice): in the exact form a second head and the body again follow the
    // first reply; kept for the clients of that form, which act on the first head and on "Connection:
    // close".
    if (!form.explainRefusals) {
        reply.sendStatus(JsonHttpReply::NoContent);
    }
}

String RequestContext::describeResource(const char* rest) const
{
    return String(rest) + (queryLength != 0 ? "?" : "") + query;
}

void RequestContext::answer(resources::Status status, const Operation& operation, const char* rest, bool errorsBefore)
{
    switch (status) {
    case resources::Ok:
        if (logger->hasErrors() && !form.explainRefusals) {
            // QUIRK(exact-form-500-after-error): the logger's mark stays until the host resets it, so
            // every later success answers 500 too; kept for the exact form's clients, while the
            // configured form below blames a request only for its own errors.
            reply.sendStatus(JsonHttpReply::InternalServerError);
        } else if (logger->hasErrors() && !errorsBefore) {
            // The configured form blames a request only for the errors logged while it ran.
            refuse(JsonHttpReply::InternalServerError, "HTTP request: an error was logged while " +
                                                           String(operation.verb) + " resource '" +
                                                           describeResource(rest) + "' (see the host's log).");
        } else {
            reply.sendStatus(JsonHttpReply::Ok);
        }
        return;
    case resources::Error:
        refuse(JsonHttpReply::BadRequest,
               "HTTP request: error while " + String(operation.verb) + " resource '" + describeResource(rest) + "'.");
        return;
    default:
        refuse(operation.unknownStatus, "HTTP request: unknown resource '" + describeResource(rest) + "'.");
        return;
    }
}

void RequestContext::refuse(unsigned int statusIndex, const String& message, const char* extraHeaders)
{
    TOV_LOG_WARNING(logger, message);
    if (form.explainRefusals && statusIndex != JsonHttpReply::NoContent) {
        reply.sendError(JsonHttpReply::getStatusCode(statusIndex), JsonHttpReply::getReasonPhrase(statusIndex), message,
                        extraHeaders);
    } else {
        reply.sendStatus(statusIndex);
    }
}

} // namespace

void HTTPServer::handleRequest(InspectionFramework& framework, HTTPConnection& connection)
{
    handleRequest(framework, connection, exactForm);
}

void HTTPServer::handleRequest(InspectionFramework& framework, HTTPConnection& connection, const RequestForm& form)
{
    RequestContext request(framework, connection, form);
    request.handle();
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
