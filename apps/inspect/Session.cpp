#include "apps/inspect/Session.h"

#include "apps/inspect/Commands.h"
#include "apps/inspect/JsonText.h"

#include <tov/utils/DynamicObject.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <thread>

namespace tov {
namespace inspect {

namespace {

using utils::DynamicObject;
namespace type = utils::type;
using Clock = std::chrono::steady_clock;

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "interrupt() is called from a signal handler");

} // namespace

Session::Session(const Settings& settings, std::ostream& out, std::ostream& err)
    : out(out), err(err), json(settings.json), client(settings.host, settings.port), status(exitSuccess)
{
}

int Session::fail(int exitStatus, const std::string& line)
{
    err << line << '\n';
    if (status == exitSuccess) {
        status = exitStatus;
    }
    return status;
}

int Session::unexpected(const char* method, const std::string& path)
{
    return fail(exitRefused, std::string(method) + " /api/" + path + ": the reply is not the document expected");
}

bool Session::exchange(const char* method, const std::string& path, const std::string& body, HttpReply& reply)
{
    if (client.exchange(method, "/api/" + path, body, reply)) {
        return true;
    }
    fail(client.getFailure() == HttpClient::malformed ? exitRefused : exitUnreachable, client.getError());
    return false;
}

bool Session::accept(const char* method, const std::string& path, const HttpReply& reply, const std::string& refusal,
                     const std::string& absence)
{
    if (reply.status == 200) {
        return true;
    }
    const std::string what = std::string(method) + " /api/" + path + ": ";
    const std::string code = std::to_string(reply.status) + " " + reply.reason;
    if (reply.status == 500 && !reply.body.empty()) {
        if (!errorsNoted) {
            errorsNoted = true;
            fail(exitRefused, "note: the host answered " + code + ": it has logged an error since it last reset");
        }
        return true;
    }
    // A resource that is not there is a 404 to GET, and a 204 to POST and DELETE.
    const bool missing = reply.status == 404 || (reply.status == 204 && std::string(method) != "GET");
    if (reply.status == 400) {
        fail(exitRefused, refusal.empty() ? what + "refused (" + code + ")" : refusal);
    } else if (missing) {
        fail(exitRefused, absence.empty() ? what + "no such resource (" + code + ")" : absence);
    } else {
        fail(exitRefused, what + "the host answered " + code);
    }
    return false;
}

bool Session::call(const char* method, const std::string& path, const std::string& body, HttpReply& reply,
                   const std::string& refusal, const std::string& absence)
{
    return exchange(method, path, body, reply) && accept(method, path, reply, refusal, absence);
}

bool Session::callJson(const char* method, const std::string& path, const std::string& body, HttpReply& reply,
                       DynamicObject& document, const std::string& refusal, const std::string& absence)
{
    return call(method, path, body, reply, refusal, absence) && read(method, path, reply, document);
}

bool Session::read(const char* method, const std::string& path, const HttpReply& reply, DynamicObject& document)
{
    if (readJson(reply.body, document)) {
        return true;
    }
    unexpected(method, path);
    return false;
}

void Session::printRaw(const std::string& body)
{
    out << body;
    if (body.empty() || body.back() != '\n') {
        out << '\n';
    }
}

void Session::printDocument(const std::string& body)
{
    std::string indented;
    if (!json && indentJson(body, indented)) {
        out << indented << '\n';
    } else {
        printRaw(body);
    }
}

int usageError(std::ostream& err, const std::string& message)
{
    err << "tov-inspect: " << message << "\ntry 'tov-inspect --help'\n";
    return exitUsage;
}

bool parseNumber(const std::string& text, unsigned long long maximum, unsigned long long& value)
{
    if (text.empty() || text.size() > 19 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    value = std::strtoull(text.c_str(), nullptr, 10);
    return value <= maximum;
}

bool parseEntity(const std::string& text, unsigned int& entity)
{
    unsigned long long value = 0;
    if (!parseNumber(text, 0xFFFFFFFFull, value)) {
        return false;
    }
    entity = static_cast<unsigned int>(value);
    return true;
}

// Blanks, controls and bytes beyond ASCII are percent-encoded; a '%' is kept, so that a path already
// encoded passes unchanged.
std::string encodePath(const std::string& path)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : path.substr(std::min(path.find_first_not_of('/'), path.size()))) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte <= 0x20 || byte >= 0x7f || std::string("\"#<>\\^`{|}").find(c) != std::string::npos) {
            encoded += '%';
            encoded += digits[byte >> 4];
            encoded += digits[byte & 15];
        } else {
            encoded += c;
        }
    }
    return encoded;
}

bool readInteger(const DynamicObject& document, unsigned int parent, const char* name, long long& value)
{
    const unsigned int property = document.getChild(parent, name);
    if (property == 0 || document.getType(property) != type::integer) {
        return false;
    }
    value = document.getInt(property);
    return true;
}

bool readBoolean(const DynamicObject& document, unsigned int parent, const char* name, bool& value)
{
    const unsigned int property = document.getChild(parent, name);
    if (property == 0 || document.getType(property) != type::boolean) {
        return false;
    }
    value = document.getBool(property);
    return true;
}

bool readText(const DynamicObject& document, unsigned int parent, const char* name, std::string& value)
{
    const unsigned int property = document.getChild(parent, name);
    const char* text = property != 0 && document.getType(property) == type::string ? document.getString(property)
                                                                                    : nullptr;
    if (text == nullptr) {
        return false;
    }
    value = text;
    return true;
}

bool readList(const DynamicObject& document, std::vector<unsigned int>& elements)
{
    const unsigned int root = document.getRoot();
    if (document.getType(root) == type::null) {
        return true;
    }
    if (document.getType(root) != type::array) {
        return false;
    }
    for (unsigned int i = 0, count = document.countChildren(root); i < count; ++i) {
        elements.push_back(document.getChild(root, i));
    }
    return true;
}

bool pause(Clock::duration period)
{
    const Clock::time_point until = Clock::now() + period;
    while (!interrupted && Clock::now() < until) {
        std::this_thread::sleep_for(std::min<Clock::duration>(std::chrono::milliseconds(20), until - Clock::now()));
    }
    return !interrupted;
}

bool isInterrupted()
{
    return interrupted;
}

void clearInterrupt()
{
    interrupted = false;
}

void interrupt()
{
    interrupted = true;
}

} // namespace inspect
} // namespace tov
