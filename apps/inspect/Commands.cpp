#include "apps/inspect/Commands.h"

#include "apps/inspect/DebugCommands.h"
#include "apps/inspect/EventCommands.h"
#include "apps/inspect/JsonText.h"
#include "apps/inspect/Session.h"
#include "apps/inspect/Tables.h"

#include <algorithm>
#include <cstdint>

namespace tov {
namespace inspect {

namespace {

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

using Handler = int (*)(Session&, const Arguments&);

struct Command {
    const char* name;
    std::size_t minimum;
    std::size_t maximum;
    std::vector<std::string> flags;
    std::vector<std::string> valued;
    Handler handler;
};

// Engines, and any resource.

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
    clearInterrupt();
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

const char* getUsage()
{
    return usageText;
}

} // namespace inspect
} // namespace tov
