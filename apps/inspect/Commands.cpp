#include "apps/inspect/Commands.h"

#include "apps/inspect/HttpClient.h"
#include "apps/inspect/JsonText.h"
#include "apps/inspect/Tables.h"

#include <tov/utils/DynamicObject.h>
#include <tov/utils/debugger/DebuggerFramework.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <map>
#include <set>
#include <thread>

namespace tov {
namespace inspect {

namespace {

using utils::DynamicObject;
namespace type = utils::type;
using Clock = std::chrono::steady_clock;

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "interrupt() is called from a signal handler");

constexpr const char* usageText =
    R"(usage: tov-inspect [--host H] [--port P] [--json] COMMAND [ARGUMENTS]

Looks into a running simulation host through its inspector (127.0.0.1:8000 unless told otherwise).

commands:
  engines [PATH...]       which of debug, events, world and each PATH answer
  enable ENGINE           switch an engine of the host on
  disable ENGINE          switch it off (disabling debug lets a suspended simulation go)
  entities                the entities the debugger knows
  stack ENTITY            the frames of an entity, bottom first
  context ENTITY INDEX    the content of one frame
  status                  whether the simulation is suspended, and the entity that stopped
  suspend [ENTITY]        stop every entity, or one, at its next frame change
  resume                  let a suspended simulation go
  step in|over|out        go on to the next frame change, over the current frame, or out of it
  wait-suspended [--timeout S]
                          wait until the simulation is suspended (at most 30 s unless told)
  break LOCATION [--entity E]... [--hits N]
                          subscribe to a breakpoint at LOCATION, for the entities given,
                          hit from its Nth pass on; prints the request id
  subscribe TYPE          subscribe to the events of a type: initialization, termination,
                          disconnection, suspension, registration, unregistration, breakpoint
  unsubscribe ID|all      end one subscription, or every one
  events [--delete] [--follow] [--count N]
                          the queued events; --delete removes them once shown; --follow polls
                          for new ones, removing what it showed, until Ctrl-C or N events
  get PATH                any resource of the host, such as world/agents/3, as JSON

options:
  --host H                the host's name or address
  --port P                the inspector's port
  --json                  print the host's JSON replies as they come, one a line
  --help                  this text

exit status: 0 done, 1 the host answered with an error or refused, 2 usage error, 3 no connection.
)";

constexpr const char* eventTypes[] = {"initialization", "termination",    "disconnection", "suspension",
                                      "registration",   "unregistration", "breakpoint"};

constexpr auto eventPollPeriod = std::chrono::milliseconds(200);
constexpr auto statusPollPeriod = std::chrono::milliseconds(100);
constexpr double defaultSuspensionTimeout = 30;   // seconds, as the usage says

struct Settings {
    std::string host = "127.0.0.1";
    std::string port = "8000";
    bool json = false;
    bool help = false;
};

int usageError(std::ostream& err, const std::string& message)
{
    err << "tov-inspect: " << message << "\ntry 'tov-inspect --help'\n";
    return exitUsage;
}

// Digits only, at most `maximum`.
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
    if (!parseNumber(text, UINT_MAX, value)) {
        return false;
    }
    entity = static_cast<unsigned int>(value);
    return true;
}

// A path as typed, made fit for a request line: blanks, controls and bytes beyond ASCII are
// percent-encoded; a '%' is kept, so that a path already encoded passes unchanged.
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

// Reading a reply's document. Every read checks the kind first: the reply comes from outside, and the
// object's readers assert on a value of another kind.
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

// The elements of the root as handles. An empty array reads back as a null root.
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

// Sleeps for `period` in short slices, so that an interrupt is seen soon. False once interrupted.
bool pause(Clock::duration period)
{
    const Clock::time_point until = Clock::now() + period;
    while (!interrupted && Clock::now() < until) {
        std::this_thread::sleep_for(std::min<Clock::duration>(std::chrono::milliseconds(20), until - Clock::now()));
    }
    return !interrupted;
}

// Talks to the host for one command and keeps its exit status: every failure is reported here, in one
// line on the error stream.
class Session {
public:
    Session(const Settings& settings, std::ostream& out, std::ostream& err)
        : out(out), err(err), json(settings.json), client(settings.host, settings.port)
    {
    }

    std::ostream& out;
    std::ostream& err;
    const bool json;

    int getStatus() const { return status; }

    int fail(int exitStatus, const std::string& line)
    {
        err << line << '\n';
        if (status == exitSuccess) {
            status = exitStatus;
        }
        return status;
    }

    // One exchange on a path under /api/; false when no reply came.
    bool exchange(const char* method, const std::string& path, const std::string& body, HttpReply& reply)
    {
        if (client.exchange(method, "/api/" + path, body, reply)) {
            return true;
        }
        fail(client.getFailure() == HttpClient::malformed ? exitRefused : exitUnreachable, client.getError());
        return false;
    }

    // Whether the reply brings the resource: a 200, or a 500 that still carries it (the host answers 500
    // to everything once it has logged an error, until it resets). Other replies are reported, with
    // `refusal` for a 400 and `absence` for a missing resource when they are given.
    bool accept(const char* method, const std::string& path, const HttpReply& reply, const std::string& refusal = "",
                const std::string& absence = "")
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

    bool call(const char* method, const std::string& path, const std::string& body, HttpReply& reply,
              const std::string& refusal = "", const std::string& absence = "")
    {
        return exchange(method, path, body, reply) && accept(method, path, reply, refusal, absence);
    }

    // A call whose reply is read as JSON into `document`.
    bool callJson(const char* method, const std::string& path, const std::string& body, HttpReply& reply,
                  DynamicObject& document, const std::string& refusal = "", const std::string& absence = "")
    {
        return call(method, path, body, reply, refusal, absence) && read(method, path, reply, document);
    }

    bool read(const char* method, const std::string& path, const HttpReply& reply, DynamicObject& document)
    {
        if (readJson(reply.body, document)) {
            return true;
        }
        unexpected(method, path);
        return false;
    }

    bool unexpected(const char* method, const std::string& path)
    {
        fail(exitRefused, std::string(method) + " /api/" + path + ": the reply is not the document expected");
        return false;
    }

    // A reply's body as it came, one a line.
    void printRaw(const std::string& body)
    {
        out << body;
        if (body.empty() || body.back() != '\n') {
            out << '\n';
        }
    }

    // Indented, or raw with --json or when it is no JSON.
    void printDocument(const std::string& body)
    {
        std::string indented;
        if (!json && indentJson(body, indented)) {
            out << indented << '\n';
        } else {
            printRaw(body);
        }
    }

private:
    HttpClient client;
    int status = exitSuccess;
    bool errorsNoted = false;
};

// What a command was given behind its name: positional words, and options by name, each occurrence's
// value in order ("" for a flag).
struct Arguments {
    std::vector<std::string> positional;
    std::map<std::string, std::vector<std::string>> options;

    bool has(const char* name) const { return options.count(name) != 0; }
    const std::string& last(const char* name) const { return options.at(name).back(); }
};

using Handler = int (*)(Session&, const Arguments&);

struct Command {
    const char* name;
    std::size_t minimum;
    std::size_t maximum;
    std::vector<std::string> flags;
    std::vector<std::string> valued;
    Handler handler;
};

// ---- engines

int probeEngines(Session& session, const Arguments& arguments)
{
    std::vector<std::string> paths = {"debug", "events", "world"};
    for (const std::string& given : arguments.positional) {
        const std::string path = encodePath(given);
        if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
            paths.push_back(path);
        }
    }
    Table table({"PATH", "ANSWERS", "STATUS"});
    std::string statuses;
    for (const std::string& path : paths) {
        HttpReply reply;
        if (!session.exchange("GET", path, "", reply)) {
            return session.getStatus();
        }
        const bool answers = reply.status == 200 || (reply.status == 500 && !reply.body.empty());
        table.addRow({path, answers ? "yes" : "no", std::to_string(reply.status) + " " + reply.reason});
        statuses += (statuses.empty() ? "{" : ",") + quoteJson(path) + ":" + std::to_string(reply.status);
    }
    if (session.json) {
        session.out << statuses << "}\n";
    } else {
        table.print(session.out);
    }
    return session.getStatus();
}

int switchEngine(Session& session, const std::string& engine, bool on)
{
    HttpReply reply;
    // The host answers twice on this connection (200, then 204); the first reply is the one that counts.
    if (!session.call("POST", "engines", "{" + quoteJson(engine) + ":" + (on ? "true" : "false") + "}", reply)) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << (on ? "enabled " : "disabled ") << engine << '\n';
    }
    return session.getStatus();
}

int enableEngine(Session& session, const Arguments& arguments)
{
    return switchEngine(session, arguments.positional[0], true);
}

int disableEngine(Session& session, const Arguments& arguments)
{
    return switchEngine(session, arguments.positional[0], false);
}

// ---- entities and their frames

int listEntities(Session& session, const Arguments&)
{
    HttpReply reply;
    DynamicObject document;
    std::vector<unsigned int> elements;
    if (!session.callJson("GET", "debug/entities", "", reply, document)) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
        return session.getStatus();
    }
    if (!readList(document, elements)) {
        return session.unexpected("GET", "debug/entities"), session.getStatus();
    }
    Table table({"ENTITY"});
    for (const unsigned int element : elements) {
        long long entity = 0;
        if (!readInteger(document, element, "index", entity)) {
            return session.unexpected("GET", "debug/entities"), session.getStatus();
        }
        table.addRow({std::to_string(entity)});
    }
    if (table.empty()) {
        session.out << "no entities\n";
    } else {
        table.print(session.out);
    }
    return session.getStatus();
}

int showStack(Session& session, const Arguments& arguments)
{
    unsigned int entity = 0;
    if (!parseEntity(arguments.positional[0], entity)) {
        return usageError(session.err, "'" + arguments.positional[0] + "' is no entity number");
    }
    const std::string path = "debug/entities/" + std::to_string(entity) + "/contexts";
    HttpReply reply;
    DynamicObject document;
    std::vector<unsigned int> elements;
    if (!session.callJson("GET", path, "", reply, document, "", "no entity " + std::to_string(entity))) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
        return session.getStatus();
    }
    if (!readList(document, elements)) {
        return session.unexpected("GET", path), session.getStatus();
    }
    Table table({"INDEX", "LOCATION"});
    for (const unsigned int element : elements) {
        long long index = 0;
        std::string location;
        if (!readInteger(document, element, "index", index) || !readText(document, element, "location", location)) {
            return session.unexpected("GET", path), session.getStatus();
        }
        table.addRow({std::to_string(index), location});
    }
    if (table.empty()) {
        session.out << "no frames\n";
    } else {
        table.print(session.out);
    }
    return session.getStatus();
}

int showContext(Session& session, const Arguments& arguments)
{
    unsigned int entity = 0;
    unsigned int index = 0;
    if (!parseEntity(arguments.positional[0], entity)) {
        return usageError(session.err, "'" + arguments.positional[0] + "' is no entity number");
    }
    if (!parseEntity(arguments.positional[1], index)) {
        return usageError(session.err, "'" + arguments.positional[1] + "' is no frame index");
    }
    HttpReply reply;
    const std::string path = "debug/entities/" + std::to_string(entity) + "/contexts/" + std::to_string(index);
    if (!session.call("GET", path, "", reply, "",
                      "no frame " + std::to_string(index) + " on entity " + std::to_string(entity))) {
        return session.getStatus();
    }
    // A frame whose engine declared it invalid shows nothing at all.
    if (reply.body.empty() && !session.json) {
        session.out << "(no content)\n";
    } else {
        session.printDocument(reply.body);
    }
    return session.getStatus();
}

// ---- execution

// "suspended, entity 3", "running", "running (last stopped: entity 3)"; false when the document is not
// the state of the debugger.
bool describeState(const DynamicObject& document, bool& suspended, std::string& description)
{
    long long entity = 0;
    if (!readBoolean(document, document.getRoot(), "suspended", suspended) ||
        !readInteger(document, document.getRoot(), "entity", entity)) {
        return false;
    }
    // The entity is told only when a suspension subscription saw the stop; it outlives the stop.
    const bool known = entity >= 0 && entity != utils::debugger::invalidEntity;
    const std::string named = known ? "entity " + std::to_string(entity) : "";
    if (suspended) {
        description = known ? "suspended, " + named : "suspended";
    } else {
        description = known ? "running (last stopped: " + named + ")" : "running";
    }
    return true;
}

int showStatus(Session& session, const Arguments&)
{
    HttpReply reply;
    DynamicObject document;
    bool suspended = false;
    std::string description;
    if (!session.callJson("GET", "debug/suspend", "", reply, document)) {
        return session.getStatus();
    }
    if (!describeState(document, suspended, description)) {
        return session.unexpected("GET", "debug/suspend"), session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << description << '\n';
    }
    return session.getStatus();
}

int waitSuspended(Session& session, const Arguments& arguments)
{
    double timeout = defaultSuspensionTimeout;
    if (arguments.has("timeout")) {
        const std::string& text = arguments.last("timeout");
        char* end = nullptr;
        timeout = std::strtod(text.c_str(), &end);
        if (text.empty() || *end != '\0' || !(timeout >= 0 && timeout < 1e7)) {
            return usageError(session.err, "'" + text + "' is no number of seconds");
        }
    }
    const Clock::time_point deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(timeout));
    for (;;) {
        HttpReply reply;
        DynamicObject document;
        bool suspended = false;
        std::string description;
        if (!session.callJson("GET", "debug/suspend", "", reply, document)) {
            return session.getStatus();
        }
        if (!describeState(document, suspended, description)) {
            return session.unexpected("GET", "debug/suspend"), session.getStatus();
        }
        if (suspended) {
            if (session.json) {
                session.printRaw(reply.body);
            } else {
                session.out << description << '\n';
            }
            return session.getStatus();
        }
        if (Clock::now() >= deadline) {
            const std::string seconds = arguments.has("timeout") ? arguments.last("timeout") : "30";
            return session.fail(exitRefused, "still running after " + seconds + " s");
        }
        if (!pause(std::min<Clock::duration>(statusPollPeriod, deadline - Clock::now()))) {
            return session.fail(exitRefused, "interrupted while waiting for a suspension");
        }
    }
}

int suspend(Session& session, const Arguments& arguments)
{
    unsigned int entity = 0;
    std::string body;
    if (!arguments.positional.empty()) {
        if (!parseEntity(arguments.positional[0], entity)) {
            return usageError(session.err, "'" + arguments.positional[0] + "' is no entity number");
        }
        body = "{\"entity\":" + std::to_string(entity) + "}";
    }
    const bool one = !body.empty() && entity != 0;
    HttpReply reply;
    const std::string refusal = one ? "suspend: refused (entity " + std::to_string(entity) +
                                          " is not registered, or the simulation is suspended already)"
                                    : "suspend: refused in this state (the simulation is suspended already)";
    if (!session.call("POST", "debug/suspend", body, reply, refusal)) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
        return session.getStatus();
    }
    if (!body.empty() && !one) {
        session.err << "note: the host cannot be told entity 0 alone; every entity stops\n";
    }
    session.out << (one ? "entity " + std::to_string(entity) + " stops at its next frame change"
                        : "every entity stops at its next frame change")
                << '\n';
    return session.getStatus();
}

int resume(Session& session, const Arguments&)
{
    HttpReply reply;
    if (!session.call("POST", "debug/resume", "", reply,
                      "resume: refused in this state (nothing was suspended; what was armed is cleared)")) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << "resumed\n";
    }
    return session.getStatus();
}

int step(Session& session, const Arguments& arguments)
{
    const std::string& kind = arguments.positional[0];
    if (kind != "in" && kind != "over" && kind != "out") {
        return usageError(session.err, "step goes in, over or out, not '" + kind + "'");
    }
    HttpReply reply;
    if (!session.call("POST", "debug/step" + kind, "", reply,
                      "step " + kind + ": refused in this state (the simulation is not suspended)")) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << "stepping " << kind << '\n';
    }
    return session.getStatus();
}

// ---- events

int subscribeWith(Session& session, const std::string& type, const std::string& body)
{
    HttpReply reply;
    DynamicObject document;
    long long request = 0;
    const char* path = "events/subscriptions";
    if (!session.callJson("POST", path, body, reply, document, "subscribe: the host refused the subscription")) {
        return session.getStatus();
    }
    if (!readInteger(document, document.getRoot(), "requestId", request)) {
        return session.unexpected("POST", path), session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << type << " request " << request << '\n';
    }
    return session.getStatus();
}

int subscribe(Session& session, const Arguments& arguments)
{
    const std::string& type = arguments.positional[0];
    if (std::find(std::begin(eventTypes), std::end(eventTypes), type) == std::end(eventTypes)) {
        return usageError(session.err, "'" + type +
                                           "' is no event type (initialization, termination, disconnection, "
                                           "suspension, registration, unregistration, breakpoint)");
    }
    return subscribeWith(session, type, "{\"type\":" + quoteJson(type) + "}");
}

int setBreakpoint(Session& session, const Arguments& arguments)
{
    std::string filters = "\"location\":" + quoteJson(arguments.positional[0]);
    bool onlyZero = true;
    if (arguments.has("entity")) {
        std::string entities;
        for (const std::string& given : arguments.options.at("entity")) {
            unsigned int entity = 0;
            if (!parseEntity(given, entity)) {
                return usageError(session.err, "'" + given + "' is no entity number");
            }
            entities += (entities.empty() ? "" : ",") + std::to_string(entity);
            onlyZero = onlyZero && entity == 0;
        }
        filters += ",\"entities\":[" + entities + "]";
    }
    if (!onlyZero) {
        // Kept on the host's side: its filter takes 0 for every number of the list.
        session.err << "note: the host reads every entity of a breakpoint filter as 0\n";
    }
    if (arguments.has("hits")) {
        unsigned long long hits = 0;
        if (!parseNumber(arguments.last("hits"), LLONG_MAX, hits)) {
            return usageError(session.err, "'" + arguments.last("hits") + "' is no hit count");
        }
        filters += ",\"hitcount\":" + std::to_string(hits);
    }
    return subscribeWith(session, "breakpoint", "{\"type\":\"breakpoint\",\"filters\":{" + filters + "}}");
}

int unsubscribe(Session& session, const Arguments& arguments)
{
    const std::string& which = arguments.positional[0];
    unsigned long long request = 0;
    if (which != "all" && !parseNumber(which, UINT_MAX, request)) {
        return usageError(session.err, "'" + which + "' is neither a request id nor all");
    }
    const std::string path = which == "all" ? "events/subscriptions" : "events/subscriptions/" + which;
    HttpReply reply;
    if (!session.call("DELETE", path, "", reply, "", "no subscription " + which)) {
        return session.getStatus();
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << (which == "all" ? "every subscription ended" : "request " + which + " ended") << '\n';
    }
    return session.getStatus();
}

struct Event {
    long long id = 0;
    std::vector<std::string> cells;   // id, type, request, entity, location
    std::string raw;
};

// The identifiers queued on the host, oldest first.
bool listEvents(Session& session, std::vector<long long>& ids)
{
    HttpReply reply;
    DynamicObject document;
    std::vector<unsigned int> elements;
    if (!session.callJson("GET", "events", "", reply, document)) {
        return false;
    }
    if (!readList(document, elements)) {
        return session.unexpected("GET", "events");
    }
    for (const unsigned int element : elements) {
        if (document.getType(element) != type::integer) {
            return session.unexpected("GET", "events");
        }
        ids.push_back(document.getInt(element));
    }
    return true;
}

// One event; `gone` when another client deleted it since the listing.
bool fetchEvent(Session& session, long long id, Event& event, bool& gone)
{
    const std::string path = "events/" + std::to_string(id);
    HttpReply reply;
    gone = false;
    if (!session.exchange("GET", path, "", reply)) {
        return false;
    }
    if (reply.status == 404) {
        gone = true;
        return true;
    }
    DynamicObject document;
    if (!session.accept("GET", path, reply) || !session.read("GET", path, reply, document)) {
        return false;
    }
    const unsigned int root = document.getRoot();
    long long request = 0;
    long long entity = 0;
    std::string type;
    std::string location;
    if (!readInteger(document, root, "id", event.id) || !readText(document, root, "type", type) ||
        !readInteger(document, root, "requestId", request)) {
        return session.unexpected("GET", path);
    }
    const bool hasEntity = readInteger(document, root, "entity", entity);
    const bool hasLocation = readText(document, root, "location", location);
    event.cells = {std::to_string(event.id), type, std::to_string(request), hasEntity ? std::to_string(entity) : "-",
                   hasLocation ? location : "-"};
    event.raw = reply.body;
    return true;
}

// An event that is already gone is no failure.
bool deleteEvent(Session& session, long long id)
{
    HttpReply reply;
    return session.exchange("DELETE", "events/" + std::to_string(id), "", reply);
}

Table eventTable()
{
    Table table({"ID", "TYPE", "REQUEST", "ENTITY", "LOCATION"});
    table.setMinimumWidths({4, 14, 7, 6});
    return table;
}

int followEvents(Session& session, unsigned long long limit)
{
    std::set<long long> shown;   // those a failed deletion may list again
    unsigned long long count = 0;
    bool headed = false;
    while (count < limit && !interrupted) {
        std::vector<long long> ids;
        if (!listEvents(session, ids)) {
            return session.getStatus();
        }
        std::set<long long> listed(ids.begin(), ids.end());
        for (auto it = shown.begin(); it != shown.end();) {
            it = listed.count(*it) != 0 ? std::next(it) : shown.erase(it);
        }
        for (const long long id : ids) {
            if (count == limit || interrupted) {
                break;
            }
            Event event;
            bool gone = false;
            if (shown.count(id) != 0) {
                continue;
            }
            if (!fetchEvent(session, id, event, gone)) {
                return session.getStatus();
            }
            if (gone) {
                continue;
            }
            if (session.json) {
                session.printRaw(event.raw);
            } else {
                Table table = eventTable();
                table.addRow(event.cells);
                table.print(session.out, !headed);
                headed = true;
            }
            session.out.flush();
            shown.insert(id);
            ++count;
            if (!deleteEvent(session, id)) {
                return session.getStatus();
            }
        }
        if (count < limit) {
            pause(eventPollPeriod);
        }
    }
    return session.getStatus();
}

int showEvents(Session& session, const Arguments& arguments)
{
    unsigned long long limit = ULLONG_MAX;
    if (arguments.has("count") && !parseNumber(arguments.last("count"), ULLONG_MAX, limit)) {
        return usageError(session.err, "'" + arguments.last("count") + "' is no count");
    }
    if (arguments.has("follow")) {
        return followEvents(session, limit);
    }
    std::vector<long long> ids;
    std::vector<Event> events;
    if (!listEvents(session, ids)) {
        return session.getStatus();
    }
    for (const long long id : ids) {
        Event event;
        bool gone = false;
        if (events.size() == limit) {
            break;
        }
        if (!fetchEvent(session, id, event, gone)) {
            return session.getStatus();
        }
        if (!gone) {
            events.push_back(event);
        }
    }
    Table table = eventTable();
    for (const Event& event : events) {
        if (session.json) {
            session.printRaw(event.raw);
        }
        table.addRow(event.cells);
    }
    if (!session.json) {
        if (table.empty()) {
            session.out << "no events\n";
        } else {
            table.print(session.out);
        }
    }
    if (arguments.has("delete")) {
        for (const Event& event : events) {
            if (!deleteEvent(session, event.id)) {
                return session.getStatus();
            }
        }
    }
    return session.getStatus();
}

// ---- anything

int getResource(Session& session, const Arguments& arguments)
{
    HttpReply reply;
    if (!session.call("GET", encodePath(arguments.positional[0]), "", reply)) {
        return session.getStatus();
    }
    session.printDocument(reply.body);
    return session.getStatus();
}

const std::vector<Command>& commands()
{
    static const std::vector<Command> table = {
        {"engines", 0, SIZE_MAX, {}, {}, &probeEngines},
        {"enable", 1, 1, {}, {}, &enableEngine},
        {"disable", 1, 1, {}, {}, &disableEngine},
        {"entities", 0, 0, {}, {}, &listEntities},
        {"stack", 1, 1, {}, {}, &showStack},
        {"context", 2, 2, {}, {}, &showContext},
        {"status", 0, 0, {}, {}, &showStatus},
        {"suspend", 0, 1, {}, {}, &suspend},
        {"resume", 0, 0, {}, {}, &resume},
        {"step", 1, 1, {}, {}, &step},
        {"wait-suspended", 0, 0, {}, {"timeout"}, &waitSuspended},
        {"break", 1, 1, {}, {"entity", "hits"}, &setBreakpoint},
        {"subscribe", 1, 1, {}, {}, &subscribe},
        {"unsubscribe", 1, 1, {}, {}, &unsubscribe},
        {"events", 0, 0, {"follow", "delete"}, {"count"}, &showEvents},
        {"get", 1, 1, {}, {}, &getResource},
    };
    return table;
}

// Splits "--name=value" into its parts; "--name" alone gives no value.
bool splitOption(const std::string& word, std::string& name, std::string& value, bool& hasValue)
{
    if (word.size() < 3 || word.compare(0, 2, "--") != 0) {
        return false;
    }
    const std::size_t equals = word.find('=');
    name = word.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
    hasValue = equals != std::string::npos;
    value = hasValue ? word.substr(equals + 1) : "";
    return true;
}

// Takes the program's options wherever they stand and leaves the command's words in order. Behind
// "--" every word is the command's.
bool readSettings(const std::vector<std::string>& arguments, Settings& settings, std::vector<std::string>& words,
                  std::string& error)
{
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string name;
        std::string value;
        bool hasValue = false;
        if (arguments[i] == "--") {
            // The command keeps the marker, behind its name, for its own words.
            if (words.empty() && i + 1 < arguments.size()) {
                words.push_back(arguments[++i]);
            }
            words.push_back("--");
            words.insert(words.end(), arguments.begin() + static_cast<long>(i) + 1, arguments.end());
            break;
        }
        if (arguments[i] == "-h" || arguments[i] == "--help") {
            settings.help = true;
        } else if (arguments[i] == "--json") {
            settings.json = true;
        } else if (splitOption(arguments[i], name, value, hasValue) && (name == "host" || name == "port")) {
            if (!hasValue && i + 1 == arguments.size()) {
                error = "--" + name + " needs a value";
                return false;
            }
            (name == "host" ? settings.host : settings.port) = hasValue ? value : arguments[++i];
        } else {
            words.push_back(arguments[i]);
        }
    }
    unsigned long long port = 0;
    if (!parseNumber(settings.port, 65535, port) || port == 0) {
        error = "'" + settings.port + "' is no port";
        return false;
    }
    if (settings.host.empty()) {
        error = "the host is empty";
        return false;
    }
    return true;
}

// The words behind the command's name, checked against what the command takes.
bool readArguments(const Command& command, const std::vector<std::string>& words, Arguments& arguments,
                   std::string& error)
{
    bool onlyPositional = false;
    for (std::size_t i = 1; i < words.size(); ++i) {
        std::string name;
        std::string value;
        bool hasValue = false;
        if (!onlyPositional && words[i] == "--") {
            onlyPositional = true;
        } else if (!onlyPositional && splitOption(words[i], name, value, hasValue)) {
            const auto takes = [&](const std::vector<std::string>& names) {
                return std::find(names.begin(), names.end(), name) != names.end();
            };
            if (takes(command.flags) && !hasValue) {
                arguments.options[name].push_back("");
            } else if (takes(command.valued)) {
                if (!hasValue && i + 1 == words.size()) {
                    error = "--" + name + " needs a value";
                    return false;
                }
                arguments.options[name].push_back(hasValue ? value : words[++i]);
            } else {
                error = std::string(command.name) + " takes no option " + words[i];
                return false;
            }
        } else {
            arguments.positional.push_back(words[i]);
        }
    }
    if (arguments.positional.size() < command.minimum || arguments.positional.size() > command.maximum) {
        error = std::string("wrong number of arguments for ") + command.name;
        return false;
    }
    return true;
}

} // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err)
{
    interrupted = false;
    Settings settings;
    std::vector<std::string> words;
    std::string error;
    if (!readSettings(arguments, settings, words, error)) {
        return usageError(err, error);
    }
    if (settings.help) {
        out << usageText;
        return exitSuccess;
    }
    if (words.empty()) {
        return usageError(err, "no command");
    }
    const auto found = std::find_if(commands().begin(), commands().end(),
                                    [&](const Command& command) { return words[0] == command.name; });
    if (found == commands().end()) {
        return usageError(err, "unknown command '" + words[0] + "'");
    }
    Arguments given;
    if (!readArguments(*found, words, given, error)) {
        return usageError(err, error);
    }
    Session session(settings, out, err);
    return found->handler(session, given);
}

void interrupt()
{
    interrupted = true;
}

const char* getUsage()
{
    return usageText;
}

} // namespace inspect
} // namespace tov
