#include "apps/inspect/DebugCommands.h"

#include "apps/inspect/Commands.h"
#include "apps/inspect/Session.h"
#include "apps/inspect/Tables.h"

#include <tov/utils/DynamicObject.h>
#include <tov/utils/debugger/DebuggerFramework.h>

#include <algorithm>
#include <cstdlib>

namespace tov {
namespace inspect {

namespace {

using utils::DynamicObject;
using Clock = std::chrono::steady_clock;

constexpr auto statusPollPeriod = std::chrono::milliseconds(100);
constexpr double defaultSuspensionTimeout = 30;   // seconds, as the usage says

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

} // namespace

// Entities and their frames.

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
        return session.unexpected("GET", "debug/entities");
    }
    Table table({"ENTITY"});
    for (const unsigned int element : elements) {
        long long entity = 0;
        if (!readInteger(document, element, "index", entity)) {
            return session.unexpected("GET", "debug/entities");
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
        return session.unexpected("GET", path);
    }
    Table table({"INDEX", "LOCATION"});
    for (const unsigned int element : elements) {
        long long index = 0;
        std::string location;
        if (!readInteger(document, element, "index", index) || !readText(document, element, "location", location)) {
            return session.unexpected("GET", path);
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
        return session.unexpected("GET", "debug/suspend");
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
            return session.unexpected("GET", "debug/suspend");
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


} // namespace inspect
} // namespace tov
