#pragma once
// EventReader: reads the host's event queue by identifier, without consuming what belongs to others.
// It remembers the last identifier it saw, so each event is read once; the events of the adapter's own
// subscriptions are handed over and deleted, the others are left for their clients.
//   EventReader reader;  reader.start(host);                   // events queued before now are not ours
//   std::vector<nlohmann::json> mine;
//   if (!reader.read(host, [&](unsigned id) { return owned.count(id) != 0; }, mine)) hostIsGone();

#include "apps/dap/AbstractHost.h"

#include <functional>
#include <vector>

namespace tov {
namespace dap {

class EventReader {
public:
    // Takes note of the newest event queued now; false when the host did not answer.
    bool start(AbstractHost& host, std::string& error);
    // Appends the new events whose request is owned, oldest first; false when the host went away.
    bool read(AbstractHost& host, const std::function<bool(unsigned int)>& owned, std::vector<nlohmann::json>& events,
              std::string& error);

private:
    bool listIdentifiers(AbstractHost& host, std::vector<long long>& identifiers, std::string& error);

    long long lastSeen = -1;
};

} // namespace dap
} // namespace tov
