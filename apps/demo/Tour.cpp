#include "Tour.h"

#include "HttpClient.h"
#include "JsonText.h"
#include "Simulation.h"

#include <chrono>
#include <functional>
#include <ostream>
#include <thread>

namespace demo {

namespace {

using tov::utils::DynamicObject;
namespace type = tov::utils::type;

// One session: prints each request with its reply, and counts the checks that failed.
class Session {
public:
    Session(const std::string& address, unsigned int port, std::ostream& out) : client(address, port), out(out) {}

    HttpClient::Reply call(const std::string& method, const std::string& path, const std::string& body = "",
                           bool quiet = false)
    {
        const HttpClient::Reply reply = client.send(method, "/api/" + path, body);
        if (!quiet) {
            out << "  " << method << " /api/" << path << (body.empty() ? "" : " " + body) << "\n    -> "
                << reply.status << " " << shorten(reply.body) << "\n";
        }
        return reply;
    }

    // The reply's body as a tree; empty unless the status is 200.
    DynamicObject read(const std::string& method, const std::string& path, const std::string& body = "",
                       bool quiet = false)
    {
        DynamicObject tree;
        const HttpClient::Reply reply = call(method, path, body, quiet);
        if (reply.status == 200) {
            readJson(reply.body, tree, nullptr);
        }
        return tree;
    }

    void check(bool passed, const std::string& what)
    {
        out << (passed ? "  ok: " : "  FAILED: ") << what << "\n";
        failures += passed ? 0 : 1;
    }

    void step(const std::string& title) { out << "tour: " << title << "\n"; }

    // Polls `condition` every 20 ms for up to ten seconds.
    static bool waitFor(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return true;
    }

    int failures = 0;

private:
    static std::string shorten(const std::string& text)
    {
        return text.size() <= 300 ? text : text.substr(0, 300) + "...";
    }

    HttpClient client;
    std::ostream& out;
};

// The location of the top frame of an entity's stack, "" when it cannot be read.
std::string topLocation(Session& session, unsigned int entity)
{
    const DynamicObject contexts = session.read("GET", "debug/entities/" + std::to_string(entity) + "/contexts");
    const unsigned int list = contexts.getRoot();
    if (contexts.getType(list) != type::array || contexts.countChildren(list) == 0) {
        return std::string();
    }
    const unsigned int top = contexts.getChild(list, contexts.countChildren(list) - 1);
    const unsigned int location = contexts.getChild(top, "location");
    if (contexts.getType(location) != type::string) {
        return std::string();
    }
    return contexts.getString(location);
}

// The entity stopped at the moment, or -1 while running.
long long suspendedEntity(Session& session)
{
    const DynamicObject state = session.read("GET", "debug/suspend", "", true);
    const unsigned int suspended = state.getProperty("suspended");
    const unsigned int entity = state.getProperty("entity");
    if (state.getType(suspended) != type::boolean || !state.getBool(suspended) ||
        state.getType(entity) != type::integer) {
        return -1;
    }
    return state.getInt(entity);
}

bool waitForStop(Session& session, long long& entity)
{
    return Session::waitFor([&] {
        entity = suspendedEntity(session);
        return entity >= 0;
    });
}

} // namespace

bool runTour(const std::string& address, unsigned int port, unsigned int agents, std::ostream& out)
{
    Session session(address, port, out);
    const std::string seek = BehaviourLocations::seek;
    const std::string live = BehaviourLocations::live;

    session.step("list the agents of the world and the entities of the debugger");
    const DynamicObject world = session.read("GET", "world/agents");
    session.check(world.getType(world.getRoot()) == type::array && world.countChildren(world.getRoot()) == agents,
                  "the world holds " + std::to_string(agents) + " agents");
    const DynamicObject agent = session.read("GET", "world/agents/1");
    session.check(agent.getType("energy") == type::real && agent.getType("x") == type::real,
                  "an agent shows its position and energy");
    const DynamicObject entities = session.read("GET", "debug/entities");
    session.check(entities.getType(entities.getRoot()) == type::array &&
                      entities.countChildren(entities.getRoot()) == agents,
                  "the debugger lists one entity per agent");

    session.step("subscribe to suspensions, and a breakpoint at " + seek + " from its second pass");
    session.check(session.call("POST", "events/subscriptions", "{\"type\":\"suspension\"}").status == 200,
                  "suspensions are queued");
    const DynamicObject subscribed = session.read(
        "POST", "events/subscriptions",
        "{\"type\":\"breakpoint\",\"filters\":{\"location\":\"" + seek + "\",\"hitcount\":2}}");
    const unsigned int requestId = subscribed.getProperty("requestId");
    const bool armed = subscribed.getType(requestId) == type::integer;
    session.check(armed, "the breakpoint has a request id");

    session.step("wait for the hit, then remove the breakpoint so that no other agent stops there");
    long long stopped = -1;
    const bool hit = armed && waitForStop(session, stopped);
    session.check(hit, "an agent stopped");
    if (armed) {
        session.check(session.call("DELETE", "events/subscriptions/" + std::to_string(subscribed.getInt(requestId)))
                              .status == 200,
                      "the breakpoint is removed");
    }
    if (!hit) {
        session.call("POST", "debug/resume");
        return false;
    }
    // A second worker may have reached the breakpoint before it went: the steps follow the last stop.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    waitForStop(session, stopped);
    const std::string entity = std::to_string(stopped);
    out << "  agent " << entity << " stopped\n";

    session.step("print the stack of agent " + entity + " and the state its top frame shows");
    session.check(topLocation(session, static_cast<unsigned int>(stopped)) == seek, "the top frame is at " + seek);
    const DynamicObject stack = session.read("GET", "debug/entities/" + entity + "/contexts");
    const unsigned int depth =
        stack.getType(stack.getRoot()) == type::array ? stack.countChildren(stack.getRoot()) : 0;
    session.check(depth == 3, "the stack holds the simulation, #live and #seek");
    const DynamicObject frame = session.read("GET", "debug/entities/" + entity + "/contexts/" + std::to_string(depth - 1));
    session.check(frame.getProperty("energy") != 0 && frame.getProperty("position") != 0 &&
                      frame.getProperty("target") != 0,
                  "the frame shows position, energy and target");

    session.step("step over: #move comes and goes, the stop is back in #seek");
    session.check(session.call("POST", "debug/stepover").status == 200, "step over is accepted");
    long long after = -1;
    session.check(waitForStop(session, after) && after == stopped, "agent " + entity + " stopped again");
    session.check(topLocation(session, static_cast<unsigned int>(stopped)) == seek, "the top frame is at " + seek);

    session.step("step out: #seek returns, the stop is in #live");
    session.check(session.call("POST", "debug/stepout").status == 200, "step out is accepted");
    session.check(waitForStop(session, after) && after == stopped, "agent " + entity + " stopped again");
    session.check(topLocation(session, static_cast<unsigned int>(stopped)) == live, "the top frame is at " + live);

    session.step("resume");
    session.check(session.call("POST", "debug/resume").status == 200, "resume is accepted");
    session.check(Session::waitFor([&] { return suspendedEntity(session) < 0; }), "the simulation runs");

    session.step("read the events, then delete them");
    const DynamicObject events = session.read("GET", "events");
    unsigned int breakpoints = 0;
    unsigned int suspensions = 0;
    const unsigned int count = events.getType(events.getRoot()) == type::array ? events.countChildren(events.getRoot()) : 0;
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int id = events.getChild(events.getRoot(), i);
        if (events.getType(id) != type::integer) {
            continue;
        }
        const DynamicObject event = session.read("GET", "events/" + std::to_string(events.getInt(id)));
        const unsigned int kind = event.getProperty("type");
        if (event.getType(kind) != type::string) {
            continue;
        }
        const std::string name = event.getString(kind);
        const unsigned int location = event.getProperty("location");
        if (name == "breakpoint" && event.getType(location) == type::string && seek == event.getString(location)) {
            ++breakpoints;
        } else if (name == "suspension" && event.getType("entity") == type::integer &&
                   event.getInt("entity") == stopped) {
            ++suspensions;
        }
    }
    session.check(breakpoints >= 1, "a breakpoint event at " + seek);
    // A breakpoint stops its thread without a suspension event; each step's stop has one.
    session.check(suspensions >= 2, "a suspension event of agent " + entity + " for each step");
    session.check(session.call("DELETE", "events").status == 200, "the events are deleted");
    const HttpClient::Reply left = session.call("GET", "events");
    session.check(left.status == 200 && left.body == "[]", "no event is left");

    out << "tour: " << (session.failures == 0 ? "every step behaved" : std::to_string(session.failures) + " checks failed")
        << std::endl;
    return session.failures == 0;
}

} // namespace demo
