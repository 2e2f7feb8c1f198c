#pragma once
// StopTracker: what the editor is told about the host's stops. It turns the session's own events
// (breakpoints, suspensions, registrations) and the host's state of suspension into DAP events, knowing
// which stops the session caused: a pause or a step it asked for, or one of its breakpoints.
//   StopTracker tracker;
//   tracker.arm("step", false);                             // after POST debug/stepover
//   for (auto& event : tracker.tell(hostEvent)) send(event);          // {"event":"stopped",...}
//   for (auto& event : tracker.observe(suspended, entity)) send(event);

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace tov {
namespace dap {

class StopTracker {
public:
    // The session asked the host to stop: `reason` is "pause" or "step"; `all` when every entity stops.
    void arm(const std::string& reason, bool all);
    // The host runs again: nothing is stopped or armed.
    void clear();
    bool isStopped() const { return stopped; }
    // Whether leaving the host must resume it: the session stopped it, or armed a stop still to come.
    bool isSessionsDoing() const { return stoppedBySession || !pending.empty(); }

    // The DAP events that one of the session's host events means.
    std::vector<nlohmann::json> tell(const nlohmann::json& event);
    // The DAP events that the host's state means once the session's events are told: a stop that
    // another client caused, or a resume that the session did not ask for.
    std::vector<nlohmann::json> observe(bool suspended, unsigned int entity);

private:
    nlohmann::json stop(unsigned int entity, const std::string& reason, const std::string& description,
                        const nlohmann::json& hitBreakpoints, bool allThreads);

    std::string pending; // "pause", "step" or "" when the session armed nothing
    bool pausedAll = false;
    bool stopped = false;
    bool stoppedBySession = false;
    long long stoppedThread = 0;
    // Polls that saw the host suspended with no event of the session to say why.
    int unexplainedStops = 0;
};

} // namespace dap
} // namespace tov
