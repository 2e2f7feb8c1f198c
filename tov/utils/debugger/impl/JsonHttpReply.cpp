#include <tov/utils/debugger/impl/JsonHttpReply.h>

#include <tov/utils/Logging.h>
#include <tov/utils/debugger/impl/HTTPConnection.h>

#include <cstdio>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

struct HttpStatus {
    unsigned int code;
    const char* reasonPhrase;
};

const HttpStatus statuses[] = {
    {200, "OK"},           {201, "Created"},   {204, "No Content"},         {400, "Bad Request"},
    {401, "Unauthorized"}, {403, "Forbidden"}, {404, "Not Found"},          {405, "Method Not Allowed"},
    {500, "Internal Server Error"},            {501, "Not Implemented"},
};
const unsigned int statusCount = sizeof(statuses) / sizeof(statuses[0]);

const HttpStatus& findStatus(unsigned int statusIndex)
{
    return statuses[statusIndex < statusCount ? statusIndex : static_cast<unsigned int>(JsonHttpReply::InternalServerError)];
}

} // namespace

JsonHttpReply::Buffer::Buffer() = default;

JsonHttpReply::Buffer::~Buffer() = default;

bool JsonHttpReply::Buffer::isWritable() const
{
    return stream.good();
}

bool JsonHttpReply::Buffer::write(const char* buffer, unsigned int size, AbstractLogger* logger)
{
    stream.write(buffer, size);
    if (!stream) {
        TOV_LOG_ERROR(logger, error::invalidOperation, "Error writing to the underlying buffer.");
        return false;
    }
    return true;
}

bool JsonHttpReply::Buffer::isReadable() const
{
    return false;
}

bool JsonHttpReply::Buffer::read(char*, unsigned int&, AbstractLogger* logger)
{
    TOV_LOG_ERROR(logger, error::invalidOperation, "Not readable.");
    return false;
}

String JsonHttpReply::Buffer::getText() const
{
    return stream.str();
}

void JsonHttpReply::Buffer::clearState()
{
    stream.clear();
}

JsonHttpReply::JsonHttpReply(HTTPConnection& connection, AbstractLogger* logger)
    : connection(connection), builder(buffer, false)
{
    builder.setLogger(logger);
}

JsonHttpReply::~JsonHttpReply() = default;

AbstractObjectBuilder& JsonHttpReply::getObjectBuilder()
{
    return builder;
}

unsigned int JsonHttpReply::getStatusCode(unsigned int statusIndex)
{
    return findStatus(statusIndex).code;
}

const char* JsonHttpReply::getReasonPhrase(unsigned int statusIndex)
{
    return findStatus(statusIndex).reasonPhrase;
}

// The head and the body go out in one write: the connection is closed behind every reply, so there
// is no keep-alive to offer, and one write spares the client a trickle of small packets.
void JsonHttpReply::sendStatus(unsigned int statusIndex)
{
    const HttpStatus& status = findStatus(statusIndex);
    const String body = buffer.getText();
    char head[256];
    const int headLength =
        std::snprintf(head, sizeof(head),
                      "HTTP/1.1 %u %s\r\n"
                      "Content-Type: application/%s; charset=utf-8\r\n"
                      "Content-Length: %u\r\n"
                      "Connection: close\r\n"
                      "Access-Control-Allow-Origin: *\r\n"
                      "\r\n",
                      status.code, status.reasonPhrase, body.empty() ? "text" : "json",
                      static_cast<unsigned int>(body.size()));
    String reply(head, static_cast<String::size_type>(headLength));
    reply += body;
    connection.write(reply.data(), static_cast<unsigned int>(reply.size()));
    buffer.clearState();
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
