#include "apps/inspect/Commands.h"

#include "apps/common/HostAddress.h"
#include "apps/inspect/DebugCommands.h"
#include "apps/inspect/EventCommands.h"
#include "apps/inspect/Session.h"
#include "apps/inspect/Tables.h"

#include <CLI/CLI.hpp>
#include <tov/utils/Uri.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <map>

namespace tov {
namespace inspect {

namespace {

constexpr const char* footer =
    "Where the host is: --url, else --host (NAME, NAME:PORT or a URL), else TOV_INSPECT_URL, else\n"
    "127.0.0.1:8000; --port replaces the port of any of them. A token comes from --token or\n"
    "TOV_INSPECT_TOKEN.\n"
    "Exit status: 0 done, 1 the host answered with an error or refused, 2 usage error, 3 no connection.\n";

// Everything the command line can give, filled in by CLI11.
struct Given {
    client::HostOptions host;
    std::string token;
    bool json = false;
    double timeout = 10;
    std::vector<std::string> paths;
    std::string engine;
    std::string resource;
    unsigned int entity = 0;
    unsigned int index = 0;
    std::vector<unsigned int> suspendEntity;
    std::string kind;
    bool noWait = false;
    double waitTimeout = 30;
    std::string location;
    long long hits = -1;
    std::string type;
    std::string which;
    bool follow = false;
    bool remove = false;
    unsigned long long count = 0;
    std::vector<std::string> helpTopic;
    bool completion = false;
};

using Handler = std::function<int(Session&)>;

// Engines, and any resource.

// The host's own list of its engines, [{"path","enabled"}], or null where the host has none (a server
// started in the exact form routes the path like any other).
nlohmann::json listEngines(Session& session)
{
    client::HostReply listing;
    if (!session.exchange("GET", "engines", "", listing) || listing.status != 200) {
        return nullptr;
    }
    const nlohmann::json listed = nlohmann::json::parse(listing.body, nullptr, false);
    return listed.is_array() ? listed : nlohmann::json();
}

// The entry of `engine` in a list of engines, null when it is not there.
nlohmann::json findEngine(const nlohmann::json& engines, const std::string& engine)
{
    for (const nlohmann::json& entry : engines) {
        if (entry.is_object() && entry.value("path", "") == engine) {
            return entry;
        }
    }
    return nullptr;
}

int probeEngines(Session& session, const std::vector<std::string>& given)
{
    const nlohmann::json listed = listEngines(session);
    if (session.getStatus() != 0) {
        return session.getStatus();
    }
    if (listed.is_array()) {
        if (!session.printJson(listed)) {
            Table table({"ENGINE", "ENABLED"});
            for (const nlohmann::json& entry : listed) {
                table.addRow({entry.value("path", ""), entry.value("enabled", false) ? "yes" : "no"});
            }
            table.print(session.out);
        }
        return session.getStatus();
    }
    // Others are probed by name.
    std::vector<std::string> paths = {"debug", "events", "world"};
    for (const std::string& path : given) {
        if (std::find(paths.begin(), paths.end(), path) == paths.end()) {
            paths.push_back(path);
        }
    }
    Table table({"ENGINE", "ANSWERS", "STATUS"});
    nlohmann::json statuses = nlohmann::json::object();
    for (const std::string& path : paths) {
        client::HostReply reply;
        if (!session.exchange("GET", client::HostClient::encodePath(path), "", reply)) {
            return session.getStatus();
        }
        const bool answers = reply.status == 200 || (reply.status == 500 && !reply.body.empty());
        table.addRow({path, answers ? "yes" : "no", std::to_string(reply.status)});
        statuses[path] = reply.status;
    }
    if (!session.printJson(statuses)) {
        table.print(session.out);
    }
    return session.getStatus();
}

int switchEngine(Session& session, const std::string& engine, bool on)
{
    // The host ignores a name it does not know, and answers as if it had switched it: ask first, in its
    // list where it has one (names in full), else by asking the engine's path for an answer.
    const nlohmann::json listed = listEngines(session);
    if (session.getStatus() != 0) {
        return session.getStatus();
    }
    bool known = false;
    if (listed.is_array()) {
        known = !findEngine(listed, engine).is_null();
    } else {
        client::HostReply probe;
        if (!session.exchange("GET", client::HostClient::encodePath(engine), "", probe)) {
            return session.getStatus();
        }
        known = probe.status != 404 && engine.find('/') == std::string::npos;
    }
    if (!known) {
        return session.fail(exitRefused, "no engine '" + engine + "' on the host (try: tov-inspect engines)");
    }
    client::HostReply reply;
    const nlohmann::json body = {{engine, on}};
    // The exact forms answer twice on this connection (200, then 204); the first reply is the one that counts.
    if (!session.call("POST", "engines", body.dump(), reply)) {
        return session.getStatus();
    }
    // Where the host lists its engines, the switch is checked there.
    const nlohmann::json state = findEngine(listEngines(session), engine);
    if (state.is_object() && state.value("enabled", on) != on) {
        return session.fail(exitRefused, "the host still has " + engine + (on ? " disabled" : " enabled"));
    }
    if (!session.printJson({{"engine", engine}, {"enabled", on}})) {
        session.out << (on ? "enabled " : "disabled ") << engine << '\n';
    }
    return session.getStatus();
}

int getResource(Session& session, const std::string& typed)
{
    const std::string path = client::HostClient::encodePath(client::HostAddress::toResourcePath(typed));
    client::HostReply reply;
    if (!session.call("GET", path, "", reply)) {
        return session.getStatus();
    }
    const nlohmann::json document = nlohmann::json::parse(reply.body, nullptr, false);
    if (document.is_discarded()) {
        session.out << reply.body << (reply.body.empty() || reply.body.back() != '\n' ? "\n" : "");
    } else {
        session.print(document);
    }
    return session.getStatus();
}

// A location is a URI such as tov:agents/forager.behavior#seek: the library's own parser decides.
bool isLocation(const std::string& text)
{
    utils::Uri uri;
    return uri.set(text.c_str(), nullptr) && uri.getScheme() != nullptr && *uri.getScheme() != '\0';
}

// The bash completion script, from the commands and options of the app itself.
std::string completionScript(const CLI::App& app)
{
    std::string commands;
    std::string options;
    std::string cases;
    for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (sub->get_group().empty()) {
            continue;
        }
        commands += (commands.empty() ? "" : " ") + sub->get_name();
        std::string subOptions;
        for (const CLI::Option* option : sub->get_options()) {
            for (const std::string& name : option->get_lnames()) {
                subOptions += " --" + name;
            }
        }
        cases += "    " + sub->get_name() + ") words=\"" + subOptions.substr(subOptions.empty() ? 0 : 1) + "\" ;;\n";
    }
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            if (name != "bash-completion") {
                options += (options.empty() ? "--" : " --") + name;
            }
        }
    }
    return "# bash completion for tov-inspect, written by tov-inspect --bash-completion\n"
           "_tov_inspect() {\n"
           "  local current=${COMP_WORDS[COMP_CWORD]} command= words i\n"
           "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
           "    case \" " +
           commands +
           " \" in *\" ${COMP_WORDS[i]} \"*) command=${COMP_WORDS[i]}; break ;; esac\n"
           "  done\n"
           "  case $command in\n"
           "    '') words=\"" +
           commands + "\" ;;\n" + cases +
           "  esac\n"
           "  [[ $current == -* ]] && words=\"$words " +
           options +
           "\"\n"
           "  COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
           "}\n"
           "complete -F _tov_inspect tov-inspect\n";
}

} // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const char* (*environment)(const char*))
{
    clearInterrupt();
    Given given;
    std::map<const CLI::App*, Handler> handlers;

    CLI::App app("Looks into a running simulation host through its inspector.", "tov-inspect");
    app.set_version_flag("--version", "tov-inspect " TOV_VERSION_TEXT);
    app.fallthrough();
    app.require_subcommand(0, 1);
    app.footer(footer);
    app.add_option("--host", given.host.host, "the host: NAME, NAME:PORT or http://NAME:PORT");
    app.add_option("--port", given.host.port, "the inspector's port (1 to 65535)");
    app.add_option("--url", given.host.url, "the inspector's URL, such as http://127.0.0.1:8000");
    app.add_option("--token", given.token, "the host's access token, sent as Authorization: Bearer");
    app.add_flag("--json", given.json, "print JSON, one document a line; errors as {\"error\": ...}");
    app.add_option("--max-time", given.timeout, "seconds an exchange with the host may take")
        ->check(CLI::Range(0.1, 3600.0))
        ->capture_default_str();
    app.add_flag("--bash-completion", given.completion, "print the bash completion script")->group("");

    const auto command = [&](const char* name, const char* description, Handler handler) {
        CLI::App* sub = app.add_subcommand(name, description);
        sub->group("Commands");
        handlers[sub] = std::move(handler);
        return sub;
    };

    command("engines",
            "the host's engines and whether each is on (a host in the exact form: which of debug, events, world and "
            "each PATH answer)",
            [&](Session& s) { return probeEngines(s, given.paths); })
        ->add_option("PATH", given.paths, "more engine paths to probe");
    command("enable", "switch an engine of the host on, checking that the host has it",
            [&](Session& s) { return switchEngine(s, given.engine, true); })
        ->add_option("ENGINE", given.engine, "the engine's path, such as debug")
        ->required();
    command("disable", "switch an engine off (disabling debug lets a suspended simulation go)",
            [&](Session& s) { return switchEngine(s, given.engine, false); })
        ->add_option("ENGINE", given.engine, "the engine's path, such as debug")
        ->required();
    command("entities", "every entity the debugger knows, with its state and top location",
            [&](Session& s) { return listEntities(s); });
    command("stack", "the frames of an entity, bottom first", [&](Session& s) { return showStack(s, given.entity); })
        ->add_option("ENTITY", given.entity, "the entity's number")
        ->required();
    CLI::App* context = command("context", "the content of one frame",
                                [&](Session& s) { return showContext(s, given.entity, given.index); });
    context->add_option("ENTITY", given.entity, "the entity's number")->required();
    context->add_option("INDEX", given.index, "the frame's index, 0 at the bottom")->required();
    command("status", "whether the simulation is suspended; when it is, every entity and where it is",
            [&](Session& s) { return showStatus(s); });
    command("suspend", "stop every entity, or one, at its next frame change",
            [&](Session& s) {
                return suspend(s, given.suspendEntity.empty() ? -1LL : static_cast<long long>(given.suspendEntity[0]));
            })
        ->add_option("ENTITY", given.suspendEntity, "only this entity (not 0: the host reads 0 as every entity)")
        ->expected(0, 1);
    command("resume", "let a suspended simulation go", [&](Session& s) { return resume(s); });
    CLI::App* stepping = command("step",
                                 "go on to the next frame change (in), over the current frame or out of it, "
                                 "then wait for the stop and print where it is",
                                 [&](Session& s) { return step(s, given.kind, !given.noWait, given.waitTimeout); });
    stepping->add_option("KIND", given.kind, "in, over or out")
        ->required()
        ->check(CLI::IsMember({"in", "over", "out"}));
    stepping->add_flag("--no-wait", given.noWait, "return once the host took the step");
    stepping->add_option("--timeout", given.waitTimeout, "seconds to wait for the stop")
        ->check(CLI::Range(0.0, 1e6))
        ->capture_default_str();
    command("wait-suspended", "wait until the simulation is suspended, and print where",
            [&](Session& s) { return waitSuspended(s, given.waitTimeout); })
        ->add_option("--timeout", given.waitTimeout, "seconds to wait")
        ->check(CLI::Range(0.0, 1e6))
        ->capture_default_str();
    CLI::App* breaking = command("break",
                                 "subscribe to a breakpoint at a location (every entity: the host's entity filter "
                                 "over HTTP selects entity 0 only); prints the request id",
                                 [&](Session& s) {
                                     if (!isLocation(given.location)) {
                                         return usageError(s.err, "break: '" + given.location +
                                                                      "' is no location; a location is a URI such as "
                                                                      "tov:agents/forager.behavior#seek");
                                     }
                                     return setBreakpoint(s, given.location, given.hits);
                                 });
    breaking->add_option("LOCATION", given.location, "a URI, such as tov:agents/forager.behavior#seek")->required();
    breaking->add_option("--hits", given.hits, "hit from the Nth pass on (passes of every entity count)")
        ->check(CLI::Range(0LL, LLONG_MAX))
        ->default_str("1");
    std::vector<std::string> types(std::begin(eventTypes), std::end(eventTypes));
    command("subscribe", "subscribe to the events of a type; prints the request id",
            [&](Session& s) { return subscribe(s, given.type); })
        ->add_option("TYPE", given.type, "the event type")
        ->required()
        ->check(CLI::IsMember(types));
    command("unsubscribe", "end one subscription, or every one",
            [&](Session& s) { return unsubscribe(s, given.which); })
        ->add_option("ID", given.which, "a request id, or all")
        ->required()
        ->check(CLI::IsMember({"all"}) | CLI::Range(0u, UINT_MAX));
    CLI::App* events = command("events", "the queued events, oldest first",
                               [&](Session& s) { return showEvents(s, given.follow, given.remove, given.count); });
    events->add_flag("--follow", given.follow, "keep polling for new events until Ctrl-C or --count of them");
    events->add_flag("--delete", given.remove, "delete each event on the host once shown");
    events->add_option("--count", given.count, "stop after this many events (0: no limit)")->capture_default_str();
    command("get",
            "any resource of the host as JSON: a path below /api/, or one pasted whole (/api/world/tick, "
            "http://127.0.0.1:8000/api/world/tick)",
            [&](Session& s) { return getResource(s, given.resource); })
        ->add_option("PATH", given.resource, "such as world/agents/3")
        ->required();
    CLI::App* help = app.add_subcommand("help", "this text, or the usage of one command");
    help->group("Commands");
    help->add_option("COMMAND", given.helpTopic, "a command")->expected(0, 1);

    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return exitSuccess;
    } catch (const CLI::CallForVersion& version) {
        out << version.what() << '\n';
        return exitSuccess;
    } catch (const CLI::ParseError& error) {
        // The usage of the command the words were meant for, or of the program.
        const std::vector<CLI::App*> chosen = app.get_subcommands();
        err << "tov-inspect: " << error.what() << "\n\n"
            << (chosen.empty() ? app.help() : chosen[0]->help("tov-inspect"));
        return exitUsage;
    }
    if (given.completion) {
        out << completionScript(app);
        return exitSuccess;
    }
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    if (chosen.empty()) {
        err << "tov-inspect: no command\n\n" << app.help();
        return exitUsage;
    }
    if (chosen[0] == help) {
        if (given.helpTopic.empty()) {
            out << app.help();
            return exitSuccess;
        }
        for (const auto& entry : handlers) {
            if (entry.first->get_name() == given.helpTopic[0]) {
                out << entry.first->help("tov-inspect");
                return exitSuccess;
            }
        }
        return usageError(err, "no command '" + given.helpTopic[0] + "' (tov-inspect help lists them)");
    }

    client::HostAddress address;
    std::string problem;
    const char* url = environment != nullptr ? environment("TOV_INSPECT_URL") : nullptr;
    if (!address.resolve(given.host, url, problem)) {
        return usageError(err, problem);
    }
    Settings settings;
    settings.base = address.getBase();
    settings.json = given.json;
    settings.timeoutSeconds = given.timeout;
    settings.token = given.token;
    const char* token = environment != nullptr ? environment("TOV_INSPECT_TOKEN") : nullptr;
    if (settings.token.empty() && token != nullptr) {
        settings.token = token;
    }
    Session session(settings, out, err);
    return handlers[chosen[0]](session);
}

} // namespace inspect
} // namespace tov
