#include "apps/dap/FrameReader.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>

namespace tov {
namespace dap {

namespace {

const char lengthName[] = "content-length:";
const std::size_t lengthNameSize = sizeof lengthName - 1;
// A header that grows beyond this without its blank line is no header.
const std::size_t maximumHeader = 8192;

bool startsWithLengthName(const std::string& text, std::size_t at)
{
    if (text.size() - at < lengthNameSize) {
        return false;
    }
    for (std::size_t i = 0; i < lengthNameSize; ++i) {
        if (std::tolower(static_cast<unsigned char>(text[at + i])) != lengthName[i]) {
            return false;
        }
    }
    return true;
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// Some bytes of what was skipped, fit for one log line.
std::string shown(const std::string& text)
{
    std::string line;
    for (char c : text.substr(0, 40)) {
        line += std::isprint(static_cast<unsigned char>(c)) ? c : '.';
    }
    return "'" + line + (text.size() > 40 ? "...'" : "'");
}

// Other header fields ("Content-Type: ...") may stand before the length; anything else is noise.
bool isOnlyHeaderLines(const std::string& text)
{
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        const std::string line =
            trimmed(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (!line.empty() && (line.find(':') == std::string::npos || line.find(':') == 0)) {
            return false;
        }
        if (end == std::string::npos) {
            break;
        }
        start = end + 1;
    }
    return true;
}

} // namespace

void FrameReader::append(const char* bytes, std::size_t count)
{
    buffer.append(bytes, count);
}

bool FrameReader::next(Frame& frame)
{
    frame = Frame();
    return inBody ? readBody(frame) : readHeader(frame);
}

bool FrameReader::finish(Frame& frame)
{
    frame = Frame();
    if (trimmed(buffer).empty() && !inBody) {
        buffer.clear();
        return false;
    }
    frame.problem = inBody ? "the stream ended " + std::to_string(bodyLength - buffer.size()) +
                                 " bytes before the end of the body that Content-Length announced"
                           : "the stream ended in the middle of a header: " + shown(buffer);
    frame.body = inBody ? buffer : std::string();
    buffer.clear();
    inBody = false;
    return true;
}

std::size_t FrameReader::findHeader(std::size_t from) const
{
    for (std::size_t at = from; at < buffer.size(); ++at) {
        if ((buffer[at] == 'C' || buffer[at] == 'c') && startsWithLengthName(buffer, at)) {
            return at;
        }
    }
    return std::string::npos;
}

std::size_t FrameReader::findHeaderEnd(std::size_t start) const
{
    // Peers that write bare line feeds are understood as well as those that write CR LF.
    for (std::size_t at = buffer.find('\n', start); at != std::string::npos; at = buffer.find('\n', at + 1)) {
        std::size_t next = at + 1;
        if (next < buffer.size() && buffer[next] == '\r') {
            ++next;
        }
        if (next < buffer.size() && buffer[next] == '\n') {
            return next + 1;
        }
    }
    return std::string::npos;
}

bool FrameReader::readHeader(Frame& frame)
{
    const std::size_t start = findHeader(0);
    if (start == std::string::npos) {
        if (buffer.size() > maximumHeader) {
            frame.problem =
                std::to_string(buffer.size()) + " bytes without a Content-Length header were skipped: " + shown(buffer);
            buffer.clear();
            return true;
        }
        return false;
    }
    const std::size_t end = findHeaderEnd(start);
    if (end == std::string::npos) {
        if (buffer.size() - start > maximumHeader) {
            frame.problem = "a header longer than " + std::to_string(maximumHeader) +
                            " bytes was skipped: " + shown(buffer.substr(start));
            buffer.erase(0, start + lengthNameSize);
            return true;
        }
        return false;
    }
    const std::string skipped = buffer.substr(0, start);
    if (!isOnlyHeaderLines(skipped)) {
        frame.problem = std::to_string(skipped.size()) + " bytes that are no message were skipped: " + shown(skipped);
    }
    const std::size_t lineEnd = buffer.find('\n', start);
    const std::string value = trimmed(buffer.substr(start + lengthNameSize, lineEnd - start - lengthNameSize));
    buffer.erase(0, end);
    const bool digits = !value.empty() && value.size() <= 9 &&
                        std::all_of(value.begin(), value.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!digits || std::stoul(value) > maximumBody) {
        frame.problem = "a message with Content-Length " + shown(value) +
                        " was skipped: the length must be a number from 0 to " + std::to_string(maximumBody);
        return true;
    }
    inBody = true;
    bodyLength = std::stoul(value);
    return !frame.problem.empty() || readBody(frame);
}

bool FrameReader::readBody(Frame& frame)
{
    // A complete header inside the announced body means that the length was too long: the body ends
    // where the next message begins. A valid JSON body cannot hold one, since its strings hold no raw
    // line breaks and outside strings such text is no JSON.
    const std::size_t within = std::min(buffer.size(), bodyLength);
    for (std::size_t at = findHeader(0); at != std::string::npos && at < within; at = findHeader(at + 1)) {
        if (findHeaderEnd(at) != std::string::npos) {
            frame.body = trimmed(buffer.substr(0, at));
            frame.problem = "Content-Length announced " + std::to_string(bodyLength) +
                            " bytes, but the next message began after " + std::to_string(at);
            buffer.erase(0, at);
            inBody = false;
            return true;
        }
    }
    if (buffer.size() < bodyLength) {
        return false;
    }
    frame.body = buffer.substr(0, bodyLength);
    inBody = false;
    // A length that was too short leaves the rest of the body before the next header: when the two
    // together are JSON, that was the message.
    const std::size_t following = findHeader(bodyLength);
    if (following != std::string::npos && !nlohmann::json::accept(frame.body)) {
        const std::string whole = trimmed(buffer.substr(0, following));
        if (nlohmann::json::accept(whole)) {
            frame.problem = "Content-Length announced " + std::to_string(bodyLength) + " bytes, but the message had " +
                            std::to_string(whole.size());
            frame.body = whole;
            buffer.erase(0, following);
            return true;
        }
    }
    buffer.erase(0, bodyLength);
    return true;
}

} // namespace dap
} // namespace tov
