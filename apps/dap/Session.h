#pragma once
// Session: one editor's debugging session of a host, from initialize to disconnect. It answers the
// editor's requests with what the host's inspector says, polls the host's events between requests to
// tell the editor of stops and of threads that come and go, and shares the host with other clients:
// it deletes only the events of its own subscriptions, ends only those, and leaves the simulation
// running when it goes.
//   Channel channel(1);  Session session(channel, std::cerr);
//   session.handle(R"({"seq":1,"type":"request","command":"initialize","arguments":{}})");
//   while (!session.isOver()) { ...; session.tick(); }

#include "apps/dap/AbstractHost.h"
#include "apps/dap/Breakpoints.h"
#include "apps/dap/Channel.h"
#include "apps/dap/EventReader.h"
#include "apps/dap/HostLauncher.h"
#include "apps/dap/Reply.h"
#include "apps/dap/StackView.h"
#include "apps/dap/StopTracker.h"

#include <chrono>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace tov {
namespace dap {

class Session {
public:
    Session(Channel& channel, std::ostream& log);
    ~Session();
    // One message body as the editor sent it; whatever it holds, the session goes on.
    void handle(const std::string& body);
    // Between messages: reads the host's events when it is time to.
    void tick();
    // The editor went away without disconnect: the host is left as disconnect leaves it.
    void end();
    bool isOver() const { return over; }
    void logLine(const std::string& line);

private:
    using Handler = Reply (Session::*)(const nlohmann::json& arguments);

    Reply dispatch(const std::string& command, const nlohmann::json& arguments);
    void respond(long long seq, const std::string& command, const Reply& reply);
    void sendEvent(const std::string& name, nlohmann::json body);
    void sendOutput(const std::string& category, const std::string& text);

    Reply initialize(const nlohmann::json& arguments);
    Reply attach(const nlohmann::json& arguments);
    Reply launch(const nlohmann::json& arguments);
    Reply configurationDone(const nlohmann::json& arguments);
    Reply disconnect(const nlohmann::json& arguments);
    Reply threads(const nlohmann::json& arguments);
    Reply stackTrace(const nlohmann::json& arguments);
    Reply scopes(const nlohmann::json& arguments);
    Reply variables(const nlohmann::json& arguments);
    Reply source(const nlohmann::json& arguments);
    Reply evaluate(const nlohmann::json& arguments);
    Reply setFunctionBreakpoints(const nlohmann::json& arguments);
    Reply setBreakpoints(const nlohmann::json& arguments);
    Reply setExceptionBreakpoints(const nlohmann::json& arguments);
    Reply pause(const nlohmann::json& arguments);
    Reply resume(const nlohmann::json& arguments);
    Reply next(const nlohmann::json& arguments);
    Reply stepIn(const nlohmann::json& arguments);
    Reply stepOut(const nlohmann::json& arguments);

    // Why a request that needs the host cannot go to it, "" when it can.
    std::string whyNoHost() const;
    // Opens the host at `base`, checks that its inspector answers and subscribes to what the session
    // follows; false with the reason.
    bool connect(const std::string& base, const std::string& authority, const std::string& token, std::string& error);
    Reply waitForLaunchedHost(const nlohmann::json& arguments);
    Reply step(const nlohmann::json& arguments, const char* command);
    struct ThreadState {
        long long thread = 0;
        unsigned int entity = 0;
        bool suspended = false;
        unsigned int stoppedEntity = 0; // the entity that stopped last
    };
    // The entity of the request's thread and the host's state; a refusal when either cannot be read.
    Reply readThreadState(const nlohmann::json& arguments, ThreadState& state);
    // The host's {"suspended": ..., "entity": ...}; false when it went away.
    bool readSuspension(bool& suspended, unsigned int& entity, std::string& error);
    Reply post(const std::string& path, const nlohmann::json* body, HostAnswer& answer);
    void forgetStop();

    void pollHost();
    void forwardLaunchedOutput();
    void sendAll(const std::vector<nlohmann::json>& events);
    void hostGone(const std::string& error);
    // Whether events of the host's request `requestId` are the session's.
    bool isOwn(unsigned int requestId) const;
    // Ends the session's subscriptions and events and resumes what the session stopped.
    void leaveHost();

    Channel& channel;
    std::ostream& log;
    std::unique_ptr<AbstractHost> host;
    HostLauncher launcher;
    StackView view;
    Breakpoints breakpoints;
    EventReader reader;

    bool attached = false;
    bool lost = false;
    bool over = false;
    // Every subscription the session made, also ended ones: their events left in the queue are its own.
    std::set<unsigned int> subscriptions;
    std::set<unsigned int> ended;
    StopTracker stops;
    std::chrono::steady_clock::time_point nextPoll;
    std::vector<nlohmann::json> afterResponse;
};

} // namespace dap
} // namespace tov
