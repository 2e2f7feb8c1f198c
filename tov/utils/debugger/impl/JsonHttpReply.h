#pragma once
// JsonHttpReply: one HTTP reply in the making. JSON is built through getObjectBuilder into memory, and
// sendStatus writes the head and the whole body at once. Sending twice sends the body twice.
//   JsonHttpReply reply(connection, logger);
//   engine.retrieveResource(path, length, &query, reply.getObjectBuilder()); reply.sendStatus(0);   // 200

#include <tov/utils/JsonObjectBuilder.h>
#include <tov/utils/MemoryInputOutput.h>
#include <tov/utils/String.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class HTTPConnection;

class JsonHttpReply {
public:
    // Indices of the status table given to sendStatus; any other index stands for 500.
    enum StatusIndex {
        Ok = 0,
        Created = 1,
        NoContent = 2,
        BadRequest = 3,
        Unauthorized = 4,
        Forbidden = 5,
        NotFound = 6,
        MethodNotAllowed = 7,
        InternalServerError = 8,
        NotImplemented = 9
    };

    // `connection` must outlive the reply; `logger` (may be null) hears of the builder's failures.
    // `headerLines` ("Name: value\r\n" each) go with every reply; null stands for the wildcard
    // "Access-Control-Allow-Origin: *".
    JsonHttpReply(HTTPConnection& connection, AbstractLogger* logger, const char* headerLines = nullptr);
    ~JsonHttpReply();
    JsonHttpReply(const JsonHttpReply&) = delete;
    JsonHttpReply& operator=(const JsonHttpReply&) = delete;

    AbstractObjectBuilder& getObjectBuilder();
    // Writes the head of the status and everything built so far; the body stays for a later send.
    void sendStatus(unsigned int statusIndex);
    // The same with any status, and `extraHeaders` for this reply alone.
    void sendStatus(unsigned int code, const char* reasonPhrase, const char* extraHeaders);
    // Sends {"error": message} in place of what was built, which is dropped.
    void sendError(unsigned int code, const char* reasonPhrase, const String& message, const char* extraHeaders = "");

    // The code and reason phrase of a status index.
    static unsigned int getStatusCode(unsigned int statusIndex);
    static const char* getReasonPhrase(unsigned int statusIndex);

private:
    HTTPConnection& connection;
    AbstractLogger* logger;
    String headerLines;
    // The body, written by the builder.
    MemoryInputOutput body;
    JsonObjectBuilder builder;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
