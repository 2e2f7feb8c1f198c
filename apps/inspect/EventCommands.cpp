#include "apps/inspect/EventCommands.h"

#include "apps/inspect/Commands.h"
#include "apps/inspect/Session.h"
#include "apps/inspect/Tables.h"

#include <set>

namespace tov {
namespace inspect {

const char* const eventTypes[7] = {"initialization", "termination",    "disconnection", "suspension",
                                   "registration",   "unregistration", "breakpoint"};

namespace {

constexpr auto eventPollPeriod = std::chrono::milliseconds(200);

int subscribeWith(Session& session, const std::string& type, const nlohmann::json& body)
{
    nlohmann::json document;
    long long request = 0;
    const char* path = "events/subscriptions";
    if (!session.callJson("POST", path, body.dump(), document, type + ": the host refused the subscription")) {
        return session.getStatus();
    }
    if (!readInteger(document, "requestId", request)) {
        return session.unexpected("POST", path);
    }
    if (!session.printJson(document)) {
        session.out << type << " request " << request << '\n';
    }
    return session.getStatus();
}

// The identifiers queued on the host, oldest first.
bool listEvents(Session& session, std::vector<long long>& ids)
{
    nlohmann::json document;
    nlohmann::json elements;
    if (!session.callJson("GET", "events", "", document)) {
        return false;
    }
    if (!readList(document, elements)) {
        session.unexpected("GET", "events");
        return false;
    }
    for (const nlohmann::json& element : elements) {
        if (!element.is_number_integer()) {
            session.unexpected("GET", "events");
            return false;
        }
        ids.push_back(element.get<long long>());
    }
    return true;
}

// One event; null when another client deleted it since the listing.
bool fetchEvent(Session& session, long long id, nlohmann::json& event)
{
    const std::string path = "events/" + std::to_string(id);
    client::HostReply reply;
    if (!session.exchange("GET", path, "", reply)) {
        return false;
    }
    if (reply.status == 404) {
        event = nullptr;
        return true;
    }
    if (!session.accept("GET", path, reply)) {
        return false;
    }
    event = nlohmann::json::parse(reply.body, nullptr, false);
    long long number = 0;
    if (!readInteger(event, "id", number) || readText(event, "type").empty()) {
        session.unexpected("GET", path);
        return false;
    }
    return true;
}

// An event that is already gone is no failure.
bool deleteEvent(Session& session, long long id)
{
    client::HostReply reply;
    return session.exchange("DELETE", "events/" + std::to_string(id), "", reply);
}

Table eventTable()
{
    Table table({"ID", "TYPE", "REQUEST", "ENTITY", "LOCATION"});
    table.setMinimumWidths({4, 14, 7, 6});
    return table;
}

void addRow(Table& table, const nlohmann::json& event)
{
    const auto number = [&](const char* name) {
        long long value = 0;
        return readInteger(event, name, value) ? std::to_string(value) : std::string("-");
    };
    const std::string location = readText(event, "location");
    table.addRow({number("id"), readText(event, "type"), number("requestId"), number("entity"),
                  location.empty() ? "-" : location});
}

int followEvents(Session& session, bool remove, unsigned long long limit)
{
    std::set<long long> shown; // kept on the host unless deleted, so not shown twice
    unsigned long long count = 0;
    bool headed = false;
    while ((limit == 0 || count < limit) && !isInterrupted()) {
        std::vector<long long> ids;
        if (!listEvents(session, ids)) {
            return session.getStatus();
        }
        for (const long long id : ids) {
            nlohmann::json event;
            if ((limit != 0 && count == limit) || isInterrupted()) {
                break;
            }
            if (shown.count(id) != 0) {
                continue;
            }
            if (!fetchEvent(session, id, event)) {
                return session.getStatus();
            }
            if (event.is_null()) {
                continue;
            }
            if (!session.printJson(event)) {
                Table table = eventTable();
                addRow(table, event);
                table.print(session.out, !headed);
                headed = true;
            }
            session.out.flush();
            shown.insert(id);
            ++count;
            if (remove && !deleteEvent(session, id)) {
                return session.getStatus();
            }
        }
        if (limit == 0 || count < limit) {
            pause(eventPollPeriod);
        }
    }
    return session.getStatus();
}

} // namespace

int subscribe(Session& session, const std::string& type)
{
    return subscribeWith(session, type, {{"type", type}});
}

int setBreakpoint(Session& session, const std::string& location, long long hits)
{
    nlohmann::json filters = {{"location", location}};
    if (hits >= 0) {
        filters["hitcount"] = hits;
    }
    return subscribeWith(session, "breakpoint", {{"type", "breakpoint"}, {"filters", filters}});
}

int unsubscribe(Session& session, const std::string& which)
{
    const std::string path = which == "all" ? "events/subscriptions" : "events/subscriptions/" + which;
    client::HostReply reply;
    if (!session.call("DELETE", path, "", reply, "", "no subscription " + which)) {
        return session.getStatus();
    }
    if (!session.printJson(nlohmann::json::object())) {
        session.out << (which == "all" ? "every subscription ended" : "request " + which + " ended") << '\n';
    }
    return session.getStatus();
}

int showEvents(Session& session, bool follow, bool remove, unsigned long long limit)
{
    if (follow) {
        return followEvents(session, remove, limit);
    }
    std::vector<long long> ids;
    nlohmann::json events = nlohmann::json::array();
    if (!listEvents(session, ids)) {
        return session.getStatus();
    }
    for (const long long id : ids) {
        nlohmann::json event;
        if (limit != 0 && events.size() == limit) {
            break;
        }
        if (!fetchEvent(session, id, event)) {
            return session.getStatus();
        }
        if (!event.is_null()) {
            events.push_back(event);
        }
    }
    if (!session.printJson(events)) {
        Table table = eventTable();
        for (const nlohmann::json& event : events) {
            addRow(table, event);
        }
        if (table.empty()) {
            session.out << "no events\n";
        } else {
            table.print(session.out);
        }
    }
    if (remove) {
        for (const nlohmann::json& event : events) {
            if (!deleteEvent(session, event["id"].get<long long>())) {
                return session.getStatus();
            }
        }
    }
    return session.getStatus();
}

} // namespace inspect
} // namespace tov
