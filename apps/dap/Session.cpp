#include "apps/dap/Session.h"

#include "apps/common/HostAddress.h"
#include "apps/dap/Arguments.h"
#include "apps/dap/CurlHost.h"

#include <cctype>
#include <exception>
#include <map>
#include <thread>

namespace tov {
namespace dap {

namespace {

const std::chrono::milliseconds pollInterval(100);
const std::chrono::seconds launchTimeout(15);

// Some bytes of a message that could not be read, fit for one log line.
std::string shown(const std::string& text)
{
    std::string line;
    for (char c : text.substr(0, 60)) {
        line += std::isprint(static_cast<unsigned char>(c)) ? c : '.';
    }
    return "'" + line + (text.size() > 60 ? "...'" : "'");
}

} // namespace

Session::Session(Channel& channel, std::ostream& log) : channel(channel), log(log) {}

Session::~Session()
{
    // A session that ends without a disconnect still leaves the host as a disconnect does. Should that
    // fail by an exception (an allocation, say), the destructor must not pass it on: the host is left.
    try {
        end();
    } catch (...) {
    }
}

void Session::logLine(const std::string& line)
{
    log << "tov-dap: " << line << std::endl;
}

void Session::handle(const std::string& body)
{
    const nlohmann::json message = nlohmann::json::parse(body, nullptr, false);
    if (message.is_discarded() || !message.is_object()) {
        logLine("a message that is no JSON object was skipped: " + shown(body));
        return;
    }
    const std::string type =
        message.contains("type") && message["type"].is_string() ? message["type"].get<std::string>() : "";
    if (type != "request") {
        // The adapter sends no requests, so no response is awaited.
        logLine("a message of type '" + type + "' was skipped: only requests are read");
        return;
    }
    if (!message.contains("seq") || !message["seq"].is_number_integer()) {
        logLine("a request without a numeric seq was skipped, since no response could name it: " + shown(body));
        return;
    }
    const long long seq = message["seq"].get<long long>();
    if (!message.contains("command") || !message["command"].is_string()) {
        respond(seq, "", Reply::failure("the request has no command"));
        return;
    }
    const std::string command = message["command"].get<std::string>();
    const nlohmann::json arguments = message.value("arguments", nlohmann::json());
    if (!arguments.is_null() && !arguments.is_object()) {
        respond(seq, command, Reply::failure("the arguments of '" + command + "' must be an object"));
        return;
    }
    Reply reply;
    try {
        reply = dispatch(command, arguments);
    } catch (const std::exception& fault) {
        // The last guard of "bad input never ends the adapter": a reply of a shape that no check
        // foresaw refuses this request only.
        reply = Reply::failure(std::string("tov-dap could not answer '") + command + "': " + fault.what());
    }
    respond(seq, command, reply);
}

Reply Session::dispatch(const std::string& command, const nlohmann::json& arguments)
{
    static const std::map<std::string, std::pair<Handler, bool>> handlers = {
        // The flag says whether the request needs the host.
        {"initialize", {&Session::initialize, false}},
        {"attach", {&Session::attach, false}},
        {"launch", {&Session::launch, false}},
        {"configurationDone", {&Session::configurationDone, false}},
        {"disconnect", {&Session::disconnect, false}},
        {"setBreakpoints", {&Session::setBreakpoints, false}},
        {"setExceptionBreakpoints", {&Session::setExceptionBreakpoints, false}},
        {"threads", {&Session::threads, true}},
        {"stackTrace", {&Session::stackTrace, true}},
        {"scopes", {&Session::scopes, true}},
        {"variables", {&Session::variables, true}},
        {"source", {&Session::source, true}},
        {"evaluate", {&Session::evaluate, true}},
        {"setFunctionBreakpoints", {&Session::setFunctionBreakpoints, true}},
        {"pause", {&Session::pause, true}},
        {"continue", {&Session::resume, true}},
        {"next", {&Session::next, true}},
        {"stepIn", {&Session::stepIn, true}},
        {"stepOut", {&Session::stepOut, true}},
    };
    const auto found = handlers.find(command);
    if (found == handlers.end()) {
        return Reply::failure("tov-dap does not offer the request '" + command + "'");
    }
    if (found->second.second && !whyNoHost().empty()) {
        return Reply::failure(whyNoHost());
    }
    return (this->*found->second.first)(arguments);
}

void Session::respond(long long seq, const std::string& command, const Reply& reply)
{
    nlohmann::json response = {{"type", "response"}, {"request_seq", seq}, {"success", reply.ok}, {"command", command}};
    if (reply.ok) {
        response["body"] = reply.body;
    } else {
        response["message"] = reply.message;
        response["body"] = {{"error", {{"id", 1}, {"format", reply.message}, {"showUser", true}}}};
    }
    channel.send(response);
    for (const nlohmann::json& event : afterResponse) {
        channel.send(event);
    }
    afterResponse.clear();
    if (!reply.ok && reply.hostGone) {
        hostGone(reply.message);
    }
}

void Session::sendEvent(const std::string& name, nlohmann::json body)
{
    channel.send({{"type", "event"}, {"event", name}, {"body", std::move(body)}});
}

void Session::sendOutput(const std::string& category, const std::string& text)
{
    sendEvent("output", {{"category", category}, {"output", text}});
}

std::string Session::whyNoHost() const
{
    if (lost) {
        return "the host went away: the session is over";
    }
    return attached ? "" : "no host yet: send attach or launch first";
}

Reply Session::initialize(const nlohmann::json& arguments)
{
    view.setFirstLineAndColumn(Arguments::flagOf(arguments, "linesStartAt1", true) ? 1 : 0,
                               Arguments::flagOf(arguments, "columnsStartAt1", true) ? 1 : 0);
    // Only what the host really does: breakpoints by location with a hit count, frames as documents,
    // resource paths as expressions, and stack traces in pieces.
    return Reply::success({{"supportsConfigurationDoneRequest", true},
                           {"supportsFunctionBreakpoints", true},
                           {"supportsHitConditionalBreakpoints", true},
                           {"supportsDelayedStackTraceLoading", true}});
}

Reply Session::attach(const nlohmann::json& arguments)
{
    if (attached || lost || launcher.isStarted()) {
        return Reply::failure("this session is attached already; start another session for another host");
    }
    long long port = 0;
    std::string url;
    if (!Arguments::getInteger(arguments, "port", port) && !Arguments::getString(arguments, "url", url)) {
        return Reply::failure("attach needs the inspector's port: {\"host\": \"127.0.0.1\", \"port\": 8000}");
    }
    client::HostOptions options;
    options.url = url;
    options.port = port != 0 ? std::to_string(port) : "";
    Arguments::getString(arguments, "host", options.host);
    std::string token;
    Arguments::getString(arguments, "token", token);
    client::HostAddress address;
    std::string error;
    if (!address.resolve(options, nullptr, error) ||
        !connect(address.getBase(), address.getAuthority(), token, error)) {
        return Reply::failure(error);
    }
    return Reply::success();
}

bool Session::connect(const std::string& base, const std::string& authority, const std::string& token,
                      std::string& error)
{
    host.reset(new CurlHost(base, authority, token));
    HostAnswer answer;
    if (!host->call("GET", "debug", nullptr, answer) || answer.status != 200) {
        error = "no inspector answers at " + authority + ": " + answer.error;
        host.reset();
        return false;
    }
    if (!reader.start(*host, error)) {
        host.reset();
        return false;
    }
    for (const char* type : {"suspension", "registration", "unregistration"}) {
        const nlohmann::json body = {{"type", type}};
        if (!host->call("POST", "events/subscriptions", &body, answer) || answer.status != 200 ||
            !answer.body.is_object() || !answer.body.value("requestId", nlohmann::json()).is_number_unsigned()) {
            error = std::string("the host refused a subscription to ") + type + " events: " + answer.error;
            attached = true;
            leaveHost();
            attached = false;
            host.reset();
            return false;
        }
        subscriptions.insert(answer.body["requestId"].get<unsigned int>());
    }
    attached = true;
    nextPoll = std::chrono::steady_clock::now();
    afterResponse.push_back(
        {{"type", "event"},
         {"event", "output"},
         {"body", {{"category", "console"}, {"output", "tov-dap: attached to the inspector at " + authority + "\n"}}}});
    // Breakpoints can be set from now on.
    afterResponse.push_back({{"type", "event"}, {"event", "initialized"}});
    return true;
}

Reply Session::launch(const nlohmann::json& arguments)
{
    if (attached || lost || launcher.isStarted()) {
        return Reply::failure("this session is attached already; start another session for another host");
    }
    std::string program;
    if (!Arguments::getString(arguments, "program", program) || program.empty()) {
        return Reply::failure(Arguments::missing("program", "the path of the host program"));
    }
    std::vector<std::string> words;
    const nlohmann::json given = arguments.value("args", nlohmann::json::array());
    for (const nlohmann::json& word : given.is_array() ? given : nlohmann::json::array({nullptr})) {
        if (!word.is_string()) {
            return Reply::failure("the argument 'args' must be an array of strings");
        }
        words.push_back(word.get<std::string>());
    }
    std::string directory;
    std::string error;
    Arguments::getString(arguments, "cwd", directory);
    if (!launcher.start(program, words, directory, error)) {
        return Reply::failure(error);
    }
    return waitForLaunchedHost(arguments);
}

Reply Session::waitForLaunchedHost(const nlohmann::json& arguments)
{
    long long port = 0;
    std::string hostName = "127.0.0.1";
    std::string token;
    Arguments::getInteger(arguments, "port", port);
    Arguments::getString(arguments, "host", hostName);
    Arguments::getString(arguments, "token", token);
    const auto deadline = std::chrono::steady_clock::now() + launchTimeout;
    std::string error = "it announced no inspector address (give \"port\")";
    while (std::chrono::steady_clock::now() < deadline) {
        forwardLaunchedOutput();
        std::string status;
        if (!launcher.isRunning(status)) {
            launcher.stop();
            return Reply::failure("the host ended before its inspector answered: " + status);
        }
        // The port given wins; otherwise the address the host printed, such as tov-demo's banner.
        client::HostOptions options;
        options.host = hostName;
        options.port = port > 0 ? std::to_string(port) : "";
        options.url = port > 0 ? "" : launcher.getAnnouncedUrl();
        client::HostAddress address;
        if ((port > 0 || !options.url.empty()) && address.resolve(options, nullptr, error) &&
            connect(address.getBase(), address.getAuthority(), token, error)) {
            return Reply::success();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    launcher.stop();
    return Reply::failure("the host's inspector did not answer within " + std::to_string(launchTimeout.count()) +
                          " s: " + error);
}

Reply Session::configurationDone(const nlohmann::json&)
{
    return Reply::success();
}

Reply Session::disconnect(const nlohmann::json&)
{
    leaveHost();
    if (launcher.isStarted()) {
        // A launched host is the session's: it ends with it.
        launcher.stop();
    }
    over = true;
    return Reply::success();
}

void Session::end()
{
    leaveHost();
    launcher.stop();
    over = true;
}

void Session::leaveHost()
{
    if (!attached || lost) {
        return;
    }
    std::string error;
    HostAnswer answer;
    // Breakpoints go first, so that the resume below does not meet them again.
    bool reached = breakpoints.clear(*host, error);
    if (reached && stops.isSessionsDoing()) {
        // Also clears a pause or a step that the session armed and that has not stopped yet.
        reached = host->call("POST", "debug/resume", nullptr, answer);
    }
    for (unsigned int request : subscriptions) {
        reached = reached && host->call("DELETE", "events/subscriptions/" + std::to_string(request), nullptr, answer);
        ended.insert(request);
    }
    std::vector<nlohmann::json> leftovers;
    reached = reached && reader.read(
                             *host, [this](unsigned int id) { return isOwn(id); }, leftovers, error);
    subscriptions.clear();
    attached = false;
    if (!reached) {
        logLine("the host went away while the session left it: " + (error.empty() ? answer.error : error));
    }
}

bool Session::isOwn(unsigned int requestId) const
{
    return subscriptions.count(requestId) != 0 || ended.count(requestId) != 0 || breakpoints.owns(requestId);
}

Reply Session::threads(const nlohmann::json&)
{
    return view.threads(*host);
}

Reply Session::stackTrace(const nlohmann::json& arguments)
{
    return view.stackTrace(*host, arguments);
}

Reply Session::scopes(const nlohmann::json& arguments)
{
    return view.scopes(*host, arguments);
}

Reply Session::variables(const nlohmann::json& arguments)
{
    return view.variables(arguments);
}

Reply Session::source(const nlohmann::json& arguments)
{
    return view.source(*host, arguments);
}

Reply Session::evaluate(const nlohmann::json& arguments)
{
    return view.evaluate(*host, arguments);
}

Reply Session::setFunctionBreakpoints(const nlohmann::json& arguments)
{
    return breakpoints.set(*host, arguments);
}

Reply Session::setBreakpoints(const nlohmann::json& arguments)
{
    return Breakpoints::refuseLines(arguments);
}

Reply Session::setExceptionBreakpoints(const nlohmann::json&)
{
    // No filters are offered: the host has no exceptions to stop at.
    return Reply::success({{"breakpoints", nlohmann::json::array()}});
}

Reply Session::post(const std::string& path, const nlohmann::json* body, HostAnswer& answer)
{
    if (!host->call("POST", path, body, answer)) {
        return Reply::failure(answer.error, true);
    }
    return Reply::success();
}

bool Session::readSuspension(bool& suspended, unsigned int& entity, std::string& error)
{
    HostAnswer answer;
    if (!host->call("GET", "debug/suspend", nullptr, answer)) {
        error = answer.error;
        return false;
    }
    suspended = Arguments::flagOf(answer.body, "suspended", false);
    const nlohmann::json stoppedEntity =
        answer.body.is_object() ? answer.body.value("entity", nlohmann::json()) : nlohmann::json();
    entity = stoppedEntity.is_number_unsigned() ? stoppedEntity.get<unsigned int>() : 0;
    return true;
}

Reply Session::readThreadState(const nlohmann::json& arguments, ThreadState& state)
{
    if (!Arguments::getInteger(arguments, "threadId", state.thread) ||
        !Arguments::toEntity(state.thread, state.entity)) {
        return Reply::failure(Arguments::missing("threadId", "a thread of the threads request"));
    }
    std::string error;
    if (!readSuspension(state.suspended, state.stoppedEntity, error)) {
        return Reply::failure(error, true);
    }
    return Reply::success();
}

Reply Session::pause(const nlohmann::json& arguments)
{
    ThreadState state;
    Reply reply = readThreadState(arguments, state);
    if (!reply.ok) {
        return reply;
    }
    if (state.suspended) {
        // The host has one gate: a thread is paused already only if it is the one that stopped.
        return stops.isStopped() && state.stoppedEntity == state.entity
                   ? Reply::success()
                   : Reply::failure("the host is stopped already (entity " + std::to_string(state.stoppedEntity) +
                                    "); continue first");
    }
    // The host reads an entity of 0 in a suspend command as none: entity 0 can only be paused with all.
    const nlohmann::json body = state.entity == 0 ? nlohmann::json::object() : nlohmann::json{{"entity", state.entity}};
    HostAnswer answer;
    reply = post("debug/suspend", &body, answer);
    if (reply.ok && answer.status != 200) {
        return Reply::failure("the host refused to suspend entity " + std::to_string(state.entity) + ": " +
                              answer.error);
    }
    if (reply.ok) {
        stops.arm("pause", state.entity == 0);
        if (state.entity == 0) {
            afterResponse.push_back(
                {{"type", "event"},
                 {"event", "output"},
                 {"body",
                  {{"category", "console"},
                   {"output",
                    "tov-dap: the host cannot single out entity 0, so every entity stops at its next frame\n"}}}});
        }
    }
    return reply;
}

Reply Session::resume(const nlohmann::json&)
{
    HostAnswer answer;
    // A host that was running answers 400, and runs: the editor's wish holds all the same.
    Reply reply = post("debug/resume", nullptr, answer);
    if (reply.ok) {
        forgetStop();
        // The host's gate releases every thread that waits in it, not one.
        reply.body = {{"allThreadsContinued", true}};
    }
    return reply;
}

Reply Session::next(const nlohmann::json& arguments)
{
    return step(arguments, "stepover");
}

Reply Session::stepIn(const nlohmann::json& arguments)
{
    return step(arguments, "stepin");
}

Reply Session::stepOut(const nlohmann::json& arguments)
{
    return step(arguments, "stepout");
}

Reply Session::step(const nlohmann::json& arguments, const char* command)
{
    ThreadState state;
    Reply reply = readThreadState(arguments, state);
    if (!reply.ok) {
        return reply;
    }
    if (!state.suspended) {
        return Reply::failure("entity " + std::to_string(state.entity) + " is not stopped: nothing to step");
    }
    if (state.stoppedEntity != state.entity) {
        return Reply::failure("the host steps the entity that stopped last, entity " +
                              std::to_string(state.stoppedEntity) + ", not entity " + std::to_string(state.entity));
    }
    HostAnswer answer;
    reply = post(std::string("debug/") + command, nullptr, answer);
    if (reply.ok && answer.status != 200) {
        return Reply::failure(std::string("the host refused ") + command + ": " + answer.error);
    }
    if (reply.ok) {
        forgetStop();
        stops.arm("step", false);
        // The step opens the host's gate: every thread waiting in it runs on until the stepped one stops.
        afterResponse.push_back({{"type", "event"},
                                 {"event", "continued"},
                                 {"body", {{"threadId", state.thread}, {"allThreadsContinued", true}}}});
    }
    return reply;
}

void Session::forgetStop()
{
    view.forget();
    stops.clear();
}

void Session::tick()
{
    if (launcher.isStarted()) {
        forwardLaunchedOutput();
        std::string status;
        if (!launcher.isRunning(status) && attached && !lost) {
            hostGone("the host program ended: " + status);
        }
    }
    if (attached && !lost && std::chrono::steady_clock::now() >= nextPoll) {
        try {
            pollHost();
        } catch (const std::exception& fault) {
            logLine(std::string("an event of the host could not be read: ") + fault.what());
        }
        nextPoll = std::chrono::steady_clock::now() + pollInterval;
    }
}

void Session::forwardLaunchedOutput()
{
    for (const HostLauncher::Output& output : launcher.readOutput()) {
        sendOutput(output.category, output.text);
    }
}

void Session::pollHost()
{
    std::vector<nlohmann::json> events;
    std::string error;
    if (!reader.read(
            *host, [this](unsigned int id) { return isOwn(id); }, events, error)) {
        hostGone(error);
        return;
    }
    for (const nlohmann::json& event : events) {
        sendAll(stops.tell(event));
    }
    bool suspended = false;
    unsigned int entity = 0;
    if (!readSuspension(suspended, entity, error)) {
        hostGone(error);
        return;
    }
    const bool wasStopped = stops.isStopped();
    sendAll(stops.observe(suspended, entity));
    if (wasStopped && !stops.isStopped()) {
        view.forget();
    }
}

void Session::sendAll(const std::vector<nlohmann::json>& events)
{
    for (const nlohmann::json& event : events) {
        channel.send(event);
    }
}

void Session::hostGone(const std::string& error)
{
    if (lost) {
        return;
    }
    lost = true;
    attached = false;
    const std::string line = "the host at " + (host ? host->describe() : std::string("?")) + " went away: " + error;
    logLine(line);
    sendOutput("important", "tov-dap: " + line + "\n");
    sendEvent("terminated", nlohmann::json::object());
}

} // namespace dap
} // namespace tov
