#include "apps/dap/EventReader.h"

namespace tov {
namespace dap {

bool EventReader::start(AbstractHost& host, std::string& error)
{
    std::vector<long long> identifiers;
    if (!listIdentifiers(host, identifiers, error)) {
        return false;
    }
    for (long long identifier : identifiers) {
        lastSeen = std::max(lastSeen, identifier);
    }
    return true;
}

bool EventReader::read(AbstractHost& host, const std::function<bool(unsigned int)>& owned,
                       std::vector<nlohmann::json>& events, std::string& error)
{
    std::vector<long long> identifiers;
    if (!listIdentifiers(host, identifiers, error)) {
        return false;
    }
    for (long long identifier : identifiers) {
        if (identifier <= lastSeen) {
            continue;
        }
        lastSeen = identifier;
        HostAnswer answer;
        if (!host.call("GET", "events/" + std::to_string(identifier), nullptr, answer)) {
            error = answer.error;
            return false;
        }
        // Another client may have deleted it meanwhile: then it was not ours to see.
        const nlohmann::json& event = answer.body;
        if (answer.status != 200 || !event.is_object() || !event.contains("requestId") ||
            !event["requestId"].is_number_unsigned() || !owned(event["requestId"].get<unsigned int>())) {
            continue;
        }
        events.push_back(event);
        if (!host.call("DELETE", "events/" + std::to_string(identifier), nullptr, answer)) {
            error = answer.error;
            return false;
        }
    }
    return true;
}

bool EventReader::listIdentifiers(AbstractHost& host, std::vector<long long>& identifiers, std::string& error)
{
    HostAnswer answer;
    if (!host.call("GET", "events", nullptr, answer)) {
        error = answer.error;
        return false;
    }
    if (answer.status == 200 && answer.body.is_array()) {
        for (const nlohmann::json& identifier : answer.body) {
            if (identifier.is_number_integer()) {
                identifiers.push_back(identifier.get<long long>());
            }
        }
    }
    return true;
}

} // namespace dap
} // namespace tov
