#pragma once
// The commands of tov-inspect that subscribe to the host's events and read them.

#include <string>

namespace tov {
namespace inspect {

class Session;

// The event types the host knows, in the words of its subscriptions.
extern const char* const eventTypes[7];

int subscribe(Session& session, const std::string& type);
// `hits` < 0: from the first pass on.
int setBreakpoint(Session& session, const std::string& location, long long hits);
// A request id, or "all".
int unsubscribe(Session& session, const std::string& which);
// `limit` 0: no limit. `remove` deletes each event once shown; `follow` polls for new ones until
// interrupted or `limit` events were shown.
int showEvents(Session& session, bool follow, bool remove, unsigned long long limit);

} // namespace inspect
} // namespace tov
