#include "apps/inspect/EventCommands.h"

#include "apps/inspect/Commands.h"
#include "apps/inspect/JsonText.h"
#include "apps/inspect/Session.h"
#include "apps/inspect/Tables.h"

#include <tov/utils/DynamicObject.h>

#include <algorithm>
#include <climits>
#include <iterator>
#include <set>

namespace tov {
namespace inspect {

namespace {

using utils::DynamicObject;

constexpr const char* eventTypes[] = {"initialization", "termination",    "disconnection", "suspension",
                                      "registration",   "unregistration", "breakpoint"};
constexpr auto eventPollPeriod = std::chrono::milliseconds(200);

int subscribeWith(Session& session, const std::string& type, const std::string& body)
{
    HttpReply reply;
    DynamicObject document;
    long long request = 0;
    const char* path = "events/subscriptions";
    if (!session.callJson("POST", path, body, reply, document, type + ": the host refused the subscription")) {
        return session.getStatus();
    }
    if (!readInteger(document, document.getRoot(), "requestId", request)) {
        return session.unexpected("POST", path);
    }
    if (session.json) {
        session.printRaw(reply.body);
    } else {
        session.out << type << " request " << request << '\n';
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
        session.unexpected("GET", "events");
        return false;
    }
    for (const unsigned int element : elements) {
        if (document.getType(element) != utils::type::integer) {
            session.unexpected("GET", "events");
            return false;
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
        session.unexpected("GET", path);
        return false;
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
    while (count < limit && !isInterrupted()) {
        std::vector<long long> ids;
        if (!listEvents(session, ids)) {
            return session.getStatus();
        }
        std::set<long long> listed(ids.begin(), ids.end());
        for (auto it = shown.begin(); it != shown.end();) {
            it = listed.count(*it) != 0 ? std::next(it) : shown.erase(it);
        }
        for (const long long id : ids) {
            if (count == limit || isInterrupted()) {
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

} // namespace

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


} // namespace inspect
} // namespace tov
