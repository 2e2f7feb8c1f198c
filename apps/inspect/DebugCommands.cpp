#include "apps/inspect/DebugCommands.h"

#include "apps/inspect/Commands.h"
#include "apps/inspect/Session.h"
#include "apps/inspect/Tables.h"

#include <algorithm>

namespace tov {
namespace inspect {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto statusPollPeriod = std::chrono::milliseconds(50);
// The host's "no entity" in the state of the debugger.
constexpr long long noEntity = 4294967295LL;

struct State {
    bool suspended = false;
    long long entity = -1; // the entity that stopped, -1 when the host does not know it
};

bool readState(Session& session, State& state)
{
    nlohmann::json document;
    if (!session.callJson("GET", "debug/suspend", "", document)) {
        return false;
    }
    long long entity = -1;
    if (!document.is_object() || !document.contains("suspended") || !document["suspended"].is_boolean() ||
        !readInteger(document, "entity", entity)) {
        session.unexpected("GET", "debug/suspend");
        return false;
    }
    state.suspended = document["suspended"].get<bool>();
    // The entity is told only when a suspension subscription saw the stop; it outlives the stop.
    state.entity = entity >= 0 && entity != noEntity ? entity : -1;
    return true;
}

// The frames of an entity, bottom first; false (reported) when the host refuses.
bool readFrames(Session& session, long long entity, nlohmann::json& frames)
{
    const std::string path = "debug/entities/" + std::to_string(entity) + "/contexts";
    nlohmann::json document;
    if (!session.callJson("GET", path, "", document, "", "no entity " + std::to_string(entity))) {
        return false;
    }
    if (!readList(document, frames)) {
        session.unexpected("GET", path);
        return false;
    }
    return true;
}

std::string topLocation(const nlohmann::json& frames)
{
    return frames.empty() ? std::string() : readText(frames.back(), "location");
}

// Every entity with its state and top location: [{"entity":0,"state":"suspended","location":"..."}].
bool describeEntities(Session& session, const State& state, nlohmann::json& rows)
{
    nlohmann::json document;
    nlohmann::json elements;
    if (!session.callJson("GET", "debug/entities", "", document)) {
        return false;
    }
    if (!readList(document, elements)) {
        session.unexpected("GET", "debug/entities");
        return false;
    }
    rows = nlohmann::json::array();
    for (const nlohmann::json& element : elements) {
        long long entity = 0;
        nlohmann::json frames;
        if (!readInteger(element, "index", entity)) {
            session.unexpected("GET", "debug/entities");
            return false;
        }
        if (!readFrames(session, entity, frames)) {
            return false;
        }
        // While suspended every entity waits at its next frame change; the one that stopped it is named.
        const char* what = !state.suspended ? "running" : entity == state.entity ? "stopped" : "suspended";
        rows.push_back({{"entity", entity}, {"state", what}, {"location", topLocation(frames)}});
    }
    return true;
}

void printEntities(Session& session, const nlohmann::json& rows)
{
    Table table({"ENTITY", "STATE", "LOCATION"});
    for (const nlohmann::json& row : rows) {
        table.addRow({std::to_string(row["entity"].get<long long>()), row["state"].get<std::string>(),
                      row["location"].get<std::string>()});
    }
    if (table.empty()) {
        session.out << "no entities\n";
    } else {
        table.print(session.out);
    }
}

// "suspended, entity 1 at tov:agents/forager.behavior#seek", "suspended", "running".
std::string describe(Session& session, const State& state, std::string& location)
{
    if (!state.suspended) {
        return "running";
    }
    if (state.entity < 0) {
        return "suspended";
    }
    nlohmann::json frames;
    location = readFrames(session, state.entity, frames) ? topLocation(frames) : std::string();
    return "suspended, entity " + std::to_string(state.entity) + (location.empty() ? "" : " at " + location);
}

bool awaitStop(Session& session, double timeoutSeconds, State& state)
{
    const Clock::time_point deadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(timeoutSeconds));
    for (;;) {
        if (!readState(session, state)) {
            return false;
        }
        if (state.suspended) {
            return true;
        }
        if (Clock::now() >= deadline) {
            session.fail(exitRefused, "still running after " + nlohmann::json(timeoutSeconds).dump() + " s");
            return false;
        }
        if (!pause(std::min<Clock::duration>(statusPollPeriod, deadline - Clock::now()))) {
            session.fail(exitRefused, "interrupted while waiting for a suspension");
            return false;
        }
    }
}

// What status, wait-suspended and step print once the state is known.
int reportState(Session& session, const State& state)
{
    std::string location;
    const std::string line = describe(session, state, location);
    if (session.json) {
        nlohmann::json document = {{"suspended", state.suspended}, {"entity", state.entity}};
        if (!location.empty()) {
            document["location"] = location;
        }
        session.printJson(document);
    } else {
        session.out << line << '\n';
    }
    return session.getStatus();
}

int post(Session& session, const std::string& path, const std::string& body, const std::string& refusal,
         const std::string& done)
{
    client::HostReply reply;
    if (!session.call("POST", path, body, reply, refusal)) {
        return session.getStatus();
    }
    if (!session.printJson(nlohmann::json::object())) {
        session.out << done << '\n';
    }
    return session.getStatus();
}

} // namespace

int listEntities(Session& session)
{
    State state;
    nlohmann::json rows;
    if (!readState(session, state) || !describeEntities(session, state, rows)) {
        return session.getStatus();
    }
    if (!session.printJson(rows)) {
        printEntities(session, rows);
    }
    return session.getStatus();
}

int showStack(Session& session, unsigned int entity)
{
    nlohmann::json frames;
    if (!readFrames(session, entity, frames)) {
        return session.getStatus();
    }
    if (session.printJson(frames)) {
        return session.getStatus();
    }
    Table table({"INDEX", "LOCATION"});
    for (const nlohmann::json& frame : frames) {
        long long index = 0;
        if (!readInteger(frame, "index", index)) {
            return session.unexpected("GET", "debug/entities/" + std::to_string(entity) + "/contexts");
        }
        table.addRow({std::to_string(index), readText(frame, "location")});
    }
    if (table.empty()) {
        session.out << "no frames\n";
    } else {
        table.print(session.out);
    }
    return session.getStatus();
}

int showContext(Session& session, unsigned int entity, unsigned int index)
{
    client::HostReply reply;
    const std::string path = "debug/entities/" + std::to_string(entity) + "/contexts/" + std::to_string(index);
    if (!session.call("GET", path, "", reply, "",
                      "no frame " + std::to_string(index) + " on entity " + std::to_string(entity))) {
        return session.getStatus();
    }
    // A frame whose engine declared it invalid shows nothing at all.
    if (reply.body.empty()) {
        if (!session.printJson(nullptr)) {
            session.out << "(no content)\n";
        }
        return session.getStatus();
    }
    const nlohmann::json document = nlohmann::json::parse(reply.body, nullptr, false);
    if (document.is_discarded()) {
        return session.unexpected("GET", path);
    }
    session.print(document);
    return session.getStatus();
}

int showStatus(Session& session)
{
    State state;
    nlohmann::json rows;
    if (!readState(session, state)) {
        return session.getStatus();
    }
    if (!state.suspended) {
        return reportState(session, state);
    }
    std::string location;
    const std::string line = describe(session, state, location);
    if (!describeEntities(session, state, rows)) {
        return session.getStatus();
    }
    if (session.json) {
        nlohmann::json document = {{"suspended", true}, {"entity", state.entity}, {"entities", rows}};
        if (!location.empty()) {
            document["location"] = location;
        }
        session.printJson(document);
    } else {
        session.out << line << '\n';
        printEntities(session, rows);
    }
    return session.getStatus();
}

int waitSuspended(Session& session, double timeoutSeconds)
{
    State state;
    if (!awaitStop(session, timeoutSeconds, state)) {
        return session.getStatus();
    }
    return reportState(session, state);
}

int suspend(Session& session, long long entity)
{
    // The host reads {"entity":0} as no entity at all: every entity stops then.
    const bool one = entity > 0;
    const std::string body = entity >= 0 ? "{\"entity\":" + std::to_string(entity) + "}" : "";
    if (entity == 0) {
        session.err << "note: the host cannot be told entity 0 alone; every entity stops\n";
    }
    return post(session, "debug/suspend", body,
                one ? "suspend: refused (entity " + std::to_string(entity) +
                          " is not registered, or the simulation is suspended already)"
                    : "suspend: refused in this state (the simulation is suspended already)",
                one ? "entity " + std::to_string(entity) + " stops at its next frame change"
                    : "every entity stops at its next frame change");
}

int resume(Session& session)
{
    return post(session, "debug/resume", "",
                "resume: refused in this state (nothing was suspended; what was armed is cleared)", "resumed");
}

int step(Session& session, const std::string& kind, bool wait, double timeoutSeconds)
{
    const std::string refusal = "step " + kind + ": refused in this state (the simulation is not suspended)";
    if (!wait) {
        return post(session, "debug/step" + kind, "", refusal, "stepping " + kind);
    }
    client::HostReply reply;
    State state;
    if (!session.call("POST", "debug/step" + kind, "", reply, refusal) || !awaitStop(session, timeoutSeconds, state)) {
        return session.getStatus();
    }
    return reportState(session, state);
}

} // namespace inspect
} // namespace tov
