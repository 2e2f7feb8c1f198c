#include <tov/utils/debugger/impl/JsonHttpReply.h>

#include <tov/utils/debugger/impl/HTTPConnection.h>

#include <cstdio>
#include <cstring>


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
    {200, "OK"},
    {201, "Created"},
    {204, "No Content"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
};
const unsigned int statusCount = sizeof(statuses) / sizeof(statuses[0]);

const HttpStatus& findStatus(unsigned int statusIndex)
{
    return statuses[statusIndex < statusCount ? statusIndex
                                              : static_cast<unsigned int>(JsonHttpReply::InternalServerError)];
}

} // namespace

JsonHttpReply::JsonHttpReply(HTTPConnection& connection, AbstractLogger* logger, const char* headerLines)
    : connection(connection), logger(logger),
      headerLines(headerLines != nullptr ? headerLines : "Access-Control-Allow-Origin: *\r\n"), builder(body, false)
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
    sendStatus(status.code, status.reasonPhrase, "");
}

void JsonHttpReply::sendStatus(unsigned int code, const char* reasonPhrase, const char* extraHeaders)
{
    const String& bodyText = body.getText();
    char head[256];
    const int headLength = std::snprintf(head, sizeof(head),
                                         "HTTP/1.1 %u %.100s\r\n"
                                         "Content-Type: application/%s; charset=utf-8\r\n"
                                         "Content-Length: %u\r\n"
                                         "Connection: close\r\n",
                                         code, reasonPhrase, bodyText.empty() ? "text" : "json",
                                         static_cast<unsigned int>(bodyText.size()));
    const std::size_t extraLength = std::strlen(extraHeaders);
    String reply;
    reply.reserve(static_cast<std::size_t>(headLength) + headerLines.size() + extraLength + 2 + bodyText.size());
    reply.append(head, static_cast<std::size_t>(headLength));
    reply += headerLines;
    reply.append(extraHeaders, extraLength);
    reply += "\r\n";
    reply += bodyText;
    connection.write(reply.data(), static_cast<unsigned int>(reply.size()));
}

namespace {

// The message may quote what a client sent; bytes that are not UTF-8 would make the reply unreadable
// to strict JSON readers, so each such byte becomes '?'.
String toValidUtf8(const String& text)
{
    String valid;
    valid.reserve(text.size());
    for (String::size_type i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        const unsigned int length = lead < 0x80           ? 1
                                    : (lead >> 5) == 0x6  ? 2
                                    : (lead >> 4) == 0xE  ? 3
                                    : (lead >> 3) == 0x1E ? 4
                                                          : 0;
        bool whole = length != 0 && i + length <= text.size();
        for (unsigned int k = 1; whole && k < length; ++k) {
            whole = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
        }
        if (whole) {
            valid.append(text, i, length);
            i += length;
        } else {
            valid += '?';
            ++i;
        }
    }
    return valid;
}

} // namespace

void JsonHttpReply::sendError(unsigned int code, const char* reasonPhrase, const String& message,
                              const char* extraHeaders)
{
    JsonHttpReply error(connection, logger, headerLines.c_str());
    AbstractObjectBuilder& errorBuilder = error.getObjectBuilder();
    const String text = toValidUtf8(message);
    errorBuilder.begin();
    errorBuilder.beginObject();
    errorBuilder.objectChild("error");
    errorBuilder.string(text.c_str(), static_cast<unsigned int>(text.size()));
    errorBuilder.endObject();
    errorBuilder.end();
    error.sendStatus(code, reasonPhrase, extraHeaders);
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
