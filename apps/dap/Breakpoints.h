#pragma once
// Breakpoints: the editor's function breakpoints as the host's breakpoint subscriptions. The name of a
// function breakpoint is a location (tov:agents/forager.behavior#seek), its hit condition the host's
// hit count: the host stops on that pass through the location and on every later one. Conditions are
// refused, since the host has no expressions; each setFunctionBreakpoints replaces the whole set.
//   Breakpoints breakpoints;
//   Reply reply = breakpoints.set(host, {{"breakpoints", {{{"name", "tov:agents/forager.behavior#seek"}, {"hitCondition", "2"}}}}});
//   if (breakpoints.owns(event["requestId"])) ...

#include "apps/dap/AbstractHost.h"
#include "apps/dap/Reply.h"

#include <map>
#include <set>
#include <string>

namespace tov {
namespace dap {

class Breakpoints {
public:
    Reply set(AbstractHost& host, const nlohmann::json& arguments);
    // Line breakpoints in files: each one answered unverified, with how to set one that works.
    static Reply refuseLines(const nlohmann::json& arguments);
    // Whether the request is one of the set's, now or before: the events of a breakpoint just removed
    // still tell of a stop, and are still the session's to delete.
    bool owns(unsigned int requestId) const { return made.count(requestId) != 0; }
    // Ends every subscription of the set; false when the host went away.
    bool clear(AbstractHost& host, std::string& error);

private:
    // One breakpoint of the request: subscribed, or refused with the reason.
    nlohmann::json add(AbstractHost& host, const nlohmann::json& wanted, bool& hostGone);
    // The hit count that a hit condition asks for; false with the reason when the host cannot count so.
    static bool readHitCondition(const std::string& text, long long& count, std::string& reason);
    static bool isLocation(const std::string& text);

    std::map<unsigned int, std::string> locations; // by the host's request id, which is also the breakpoint's id
    std::set<unsigned int> made;
};

} // namespace dap
} // namespace tov
