#include "apps/inspect/Session.h"

#include "apps/inspect/Commands.h"

#include <algorithm>
#include <atomic>
#include <thread>

namespace tov {
namespace inspect {

namespace {

using Clock = std::chrono::steady_clock;

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "interrupt() is called from a signal handler");

} // namespace

Session::Session(const Settings& settings, std::ostream& out, std::ostream& err)
    : out(out), err(err), json(settings.json),
      client(settings.base, settings.token, static_cast<long>(settings.timeoutSeconds * 1000)), status(exitSuccess)
{
}

int Session::fail(int exitStatus, const std::string& line)
{
    if (json) {
        err << nlohmann::json{{"error", line}}.dump() << '\n';
    } else {
        err << line << '\n';
    }
    if (status == exitSuccess) {
        status = exitStatus;
    }
    return status;
}

int Session::failWith(int exitStatus, const std::string& line, const client::HostReply& reply)
{
    if (!json || reply.getErrorText().empty()) {
        return fail(exitStatus, line);
    }
    err << nlohmann::json::parse(reply.body).dump() << '\n';
    if (status == exitSuccess) {
        status = exitStatus;
    }
    return status;
}

int Session::unexpected(const char* method, const std::string& path)
{
    return fail(exitRefused, std::string(method) + " /api/" + path + ": the reply is not the document expected");
}

bool Session::exchange(const char* method, const std::string& path, const std::string& body, client::HostReply& reply)
{
    if (client.exchange(method, path, body, reply)) {
        return true;
    }
    fail(client.getFailure() == client::HostClient::malformed ? exitRefused : exitUnreachable, client.getError());
    return false;
}

bool Session::accept(const char* method, const std::string& path, const client::HostReply& reply,
                     const std::string& refusal, const std::string& absence)
{
    if (reply.status == 200) {
        return true;
    }
    const std::string what = std::string(method) + " /api/" + path + ": ";
    const std::string code = std::to_string(reply.status);
    const std::string reason = reply.getErrorText();
    if (reply.status == 500 && !reply.body.empty() && reason.empty()) {
        if (!errorsNoted) {
            errorsNoted = true;
            fail(exitRefused, "note: the host answered 500: it has logged an error since it last reset");
        }
        return true;
    }
    // A resource that is not there is a 404 to GET, and a 204 to POST and DELETE.
    const bool missing = reply.status == 404 || (reply.status == 204 && std::string(method) != "GET");
    if (!reason.empty()) {
        failWith(exitRefused,
                 what + reason + " (" + code + ")" +
                     (reply.status == 401 ? "; give the host's token with --token or TOV_INSPECT_TOKEN" : ""),
                 reply);
    } else if (reply.status == 400) {
        fail(exitRefused, refusal.empty() ? what + "refused (400)" : refusal);
    } else if (missing) {
        fail(exitRefused, absence.empty() ? what + "no such resource (" + code + ")" : absence);
    } else if (reply.status == 401) {
        fail(exitRefused, what + "the host wants a token (401): give it with --token or TOV_INSPECT_TOKEN");
    } else {
        fail(exitRefused, what + "the host answered " + code);
    }
    return false;
}

bool Session::call(const char* method, const std::string& path, const std::string& body, client::HostReply& reply,
                   const std::string& refusal, const std::string& absence)
{
    return exchange(method, path, body, reply) && accept(method, path, reply, refusal, absence);
}

bool Session::callJson(const char* method, const std::string& path, const std::string& body, nlohmann::json& document,
                       const std::string& refusal, const std::string& absence)
{
    client::HostReply reply;
    if (!call(method, path, body, reply, refusal, absence)) {
        return false;
    }
    document = nlohmann::json::parse(reply.body, nullptr, false);
    if (document.is_discarded()) {
        unexpected(method, path);
        return false;
    }
    return true;
}

void Session::print(const nlohmann::json& document)
{
    out << (json ? document.dump() : document.dump(2)) << '\n';
}

bool Session::printJson(const nlohmann::json& document)
{
    if (json) {
        out << document.dump() << '\n';
    }
    return json;
}

int usageError(std::ostream& err, const std::string& message)
{
    err << "tov-inspect: " << message << "\n";
    return exitUsage;
}

bool readList(const nlohmann::json& document, nlohmann::json& elements)
{
    if (document.is_array()) {
        elements = document;
        return true;
    }
    if (document.is_null() || (document.is_object() && document.empty())) {
        elements = nlohmann::json::array();
        return true;
    }
    return false;
}

bool readInteger(const nlohmann::json& object, const char* name, long long& value)
{
    if (!object.is_object() || !object.contains(name) || !object[name].is_number_integer()) {
        return false;
    }
    value = object[name].get<long long>();
    return true;
}

std::string readText(const nlohmann::json& object, const char* name)
{
    if (!object.is_object() || !object.contains(name) || !object[name].is_string()) {
        return std::string();
    }
    return object[name].get<std::string>();
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
