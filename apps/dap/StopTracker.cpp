#include "apps/dap/StopTracker.h"

#include "apps/dap/Arguments.h"

namespace tov {
namespace dap {

namespace {

// The polls that must see the host suspended before a stop that no event explains is announced: the
// event of a stop is queued before the thread stops, but may land between two reads of one poll.
const int unexplainedStopPolls = 2;
const char byAnotherClient[] = "Suspended by another client of the host";

nlohmann::json event(const char* name, nlohmann::json body)
{
    return {{"type", "event"}, {"event", name}, {"body", std::move(body)}};
}

} // namespace

void StopTracker::arm(const std::string& reason, bool all)
{
    clear();
    pending = reason;
    pausedAll = all;
}

void StopTracker::clear()
{
    pending.clear();
    pausedAll = false;
    stopped = false;
    stoppedBySession = false;
    unexplainedStops = 0;
}

std::vector<nlohmann::json> StopTracker::tell(const nlohmann::json& hostEvent)
{
    const std::string type = Arguments::textOf(hostEvent, "type");
    const nlohmann::json entityValue = hostEvent.value("entity", nlohmann::json());
    const unsigned int entity = entityValue.is_number_unsigned() ? entityValue.get<unsigned int>() : 0;
    if (type == "breakpoint") {
        stoppedBySession = true;
        return {stop(entity, "function breakpoint", "Paused at " + Arguments::textOf(hostEvent, "location"),
                     nlohmann::json::array({hostEvent.value("requestId", nlohmann::json())}), false)};
    }
    if (type == "suspension") {
        // The host tells no cause: a stop after the session's pause or step is the session's, any
        // other a pause by another client.
        stoppedBySession = stoppedBySession || !pending.empty();
        return {stop(entity, pending.empty() ? "pause" : pending, pending.empty() ? byAnotherClient : "",
                     nlohmann::json(), pausedAll)};
    }
    if (type == "registration" || type == "unregistration") {
        return {event("thread", {{"reason", type == "registration" ? "started" : "exited"},
                                 {"threadId", Arguments::toThread(entity)}})};
    }
    return {};
}

std::vector<nlohmann::json> StopTracker::observe(bool suspended, unsigned int entity)
{
    if (suspended && !stopped) {
        // Another client stopped the host (its breakpoint, its pause): the editor sees it as a pause.
        if (++unexplainedStops >= unexplainedStopPolls) {
            return {stop(entity, "pause", byAnotherClient, nlohmann::json(), false)};
        }
    } else if (!suspended && stopped) {
        const long long thread = stoppedThread;
        clear();
        return {event("continued", {{"threadId", thread}, {"allThreadsContinued", true}})};
    } else {
        unexplainedStops = 0;
    }
    return {};
}

nlohmann::json StopTracker::stop(unsigned int entity, const std::string& reason, const std::string& description,
                                 const nlohmann::json& hitBreakpoints, bool allThreads)
{
    stopped = true;
    unexplainedStops = 0;
    stoppedThread = Arguments::toThread(entity);
    // A breakpoint, a step or a pause of one entity stops the host thread that runs it; the others run
    // on. Only a pause of all stops every thread.
    nlohmann::json body = {{"reason", reason}, {"threadId", stoppedThread}, {"allThreadsStopped", allThreads}};
    if (!description.empty()) {
        body["description"] = description;
    }
    if (hitBreakpoints.is_array()) {
        body["hitBreakpointIds"] = hitBreakpoints;
    }
    return event("stopped", body);
}

} // namespace dap
} // namespace tov
