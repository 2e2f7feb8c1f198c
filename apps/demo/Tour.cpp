#include "Tour.h"

#include "JsonText.h"
#include "Simulation.h"

#include <apps/inspect/Commands.h>

#include <chrono>
#include <functional>
#include <ostream>
#include <sstream>
#include <thread>
#include <vector>

namespace demo {

namespace {

using tov::utils::DynamicObject;
namespace type = tov::utils::type;

// One session of tov-inspect against this host: each command is shown as a person would type it, with
// what the client printed; the checks read the same commands' JSON quietly. Failed checks are counted.
class Session {
public:
    Session(const std::string& url, std::ostream& out) : target{"--url", url}, out(out) {}

    // The client's exit status; `printed` receives its output.
    int show(const std::vector<std::string>& command, std::string* printed = nullptr)
    {
        out << "  $ tov-inspect";
        for (const std::string& word : command) {
            out << ' ' << word;
        }
        out << '\n';
        std::ostringstream text;
        std::ostringstream errors;
        const int status = tov::inspect::run(withTarget(command, false), text, errors);
        indent(text.str());
        indent(errors.str());
        if (printed != nullptr) {
            *printed = text.str();
        }
        return status;
    }

    // The first JSON reply of the command as a tree; empty when the client failed.
    DynamicObject read(const std::vector<std::string>& command)
    {
        std::ostringstream text;
        std::ostringstream errors;
        DynamicObject tree;
        if (tov::inspect::run(withTarget(command, true), text, errors) == tov::inspect::exitSuccess) {
            const std::string replies = text.str();
            readJson(replies.substr(0, replies.find('\n')), tree, nullptr);
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
    std::vector<std::string> withTarget(const std::vector<std::string>& command, bool json) const
    {
        std::vector<std::string> arguments = target;
        if (json) {
            arguments.push_back("--json");
        }
        arguments.insert(arguments.end(), command.begin(), command.end());
        return arguments;
    }

    void indent(const std::string& text)
    {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            out << "    " << line << '\n';
        }
    }

    std::vector<std::string> target;
    std::ostream& out;
};

unsigned int countElements(const DynamicObject& list)
{
    return list.getType(list.getRoot()) == type::array ? list.countChildren(list.getRoot()) : 0;
}

// The location of the top frame of an entity's stack, "" when it cannot be read.
std::string topLocation(Session& session, const std::string& entity)
{
    const DynamicObject contexts = session.read({"stack", entity});
    const unsigned int depth = countElements(contexts);
    if (depth == 0) {
        return std::string();
    }
    const unsigned int location = contexts.getChild(contexts.getChild(contexts.getRoot(), depth - 1), "location");
    return contexts.getType(location) == type::string ? contexts.getString(location) : std::string();
}

// The entity stopped at the moment, or -1 while running.
long long suspendedEntity(Session& session)
{
    const DynamicObject state = session.read({"status"});
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

// The number behind "request " in what break and subscribe print, "" when there is none.
std::string requestNumber(const std::string& printed)
{
    const std::size_t at = printed.find("request ");
    if (at == std::string::npos) {
        return std::string();
    }
    const std::size_t start = at + 8;
    const std::size_t end = printed.find_first_not_of("0123456789", start);
    return printed.substr(start, end - start);
}

} // namespace

bool runTour(const std::string& url, unsigned int agents, std::ostream& out)
{
    Session session(url, out);
    const std::string seek = BehaviourLocations::seek;
    const std::string live = BehaviourLocations::live;

    session.step("list the agents of the world and the entities of the debugger");
    session.check(countElements(session.read({"get", "world/agents"})) == agents,
                  "the world holds " + std::to_string(agents) + " agents");
    session.show({"get", "world/agents/1"});
    const DynamicObject agent = session.read({"get", "world/agents/1"});
    session.check(agent.getType("energy") == type::real && agent.getType("x") == type::real,
                  "an agent shows its position and energy");
    session.show({"entities"});
    session.check(countElements(session.read({"entities"})) == agents, "the debugger lists one entity per agent");

    session.step("subscribe to suspensions, and a breakpoint at " + seek + " from its second pass");
    session.check(session.show({"subscribe", "suspension"}) == tov::inspect::exitSuccess, "suspensions are queued");
    std::string printed;
    const bool armed = session.show({"break", seek, "--hits", "2"}, &printed) == tov::inspect::exitSuccess;
    const std::string requestId = requestNumber(printed);
    session.check(armed && !requestId.empty(), "the breakpoint has a request id");

    session.step("wait for the hit, then remove the breakpoint so that no other agent stops there");
    long long stopped = -1;
    const bool hit = armed && session.show({"wait-suspended", "--timeout", "10"}) == tov::inspect::exitSuccess;
    session.check(hit, "an agent stopped");
    if (armed) {
        session.check(session.show({"unsubscribe", requestId}) == tov::inspect::exitSuccess,
                      "the breakpoint is removed");
    }
    if (!hit) {
        session.show({"resume"});
        return false;
    }
    // A second worker may have reached the breakpoint before it went: the steps follow the last stop.
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    waitForStop(session, stopped);
    const std::string entity = std::to_string(stopped);
    session.show({"status"});

    session.step("print the stack of agent " + entity + " and the state its top frame shows");
    session.show({"stack", entity});
    session.check(topLocation(session, entity) == seek, "the top frame is at " + seek);
    const unsigned int depth = countElements(session.read({"stack", entity}));
    session.check(depth == 3, "the stack holds the simulation, #live and #seek");
    const std::vector<std::string> top = {"context", entity, std::to_string(depth - 1)};
    session.show(top);
    const DynamicObject frame = session.read(top);
    session.check(frame.getProperty("energy") != 0 && frame.getProperty("position") != 0 &&
                      frame.getProperty("target") != 0,
                  "the frame shows position, energy and target");

    session.step("step over: #move comes and goes, the stop is back in #seek");
    session.check(session.show({"step", "over"}) == tov::inspect::exitSuccess, "step over is accepted");
    long long after = -1;
    session.check(waitForStop(session, after) && after == stopped, "agent " + entity + " stopped again");
    session.check(topLocation(session, entity) == seek, "the top frame is at " + seek);

    session.step("step out: #seek returns, the stop is in #live");
    session.check(session.show({"step", "out"}) == tov::inspect::exitSuccess, "step out is accepted");
    session.check(waitForStop(session, after) && after == stopped, "agent " + entity + " stopped again");
    session.show({"stack", entity});
    session.check(topLocation(session, entity) == live, "the top frame is at " + live);

    session.step("resume");
    session.check(session.show({"resume"}) == tov::inspect::exitSuccess, "resume is accepted");
    session.check(Session::waitFor([&] { return suspendedEntity(session) < 0; }), "the simulation runs");

    session.step("read the events, then delete them");
    const DynamicObject events = session.read({"get", "events"});
    unsigned int breakpoints = 0;
    unsigned int suspensions = 0;
    for (unsigned int i = 0; i < countElements(events); ++i) {
        const unsigned int id = events.getChild(events.getRoot(), i);
        if (events.getType(id) != type::integer) {
            continue;
        }
        const DynamicObject event = session.read({"get", "events/" + std::to_string(events.getInt(id))});
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
    session.check(session.show({"events", "--delete"}) == tov::inspect::exitSuccess,
                  "the events are shown and deleted");
    session.check(countElements(session.read({"get", "events"})) == 0, "no event is left");

    out << "tour: "
        << (session.failures == 0 ? "every step behaved" : std::to_string(session.failures) + " checks failed")
        << std::endl;
    return session.failures == 0;
}

} // namespace demo
