#include "apps/dap/Breakpoints.h"

#include <tov/utils/Uri.h>

#include <cctype>

namespace tov {
namespace dap {

namespace {

const char useFunctionBreakpoints[] =
    "tov-dap stops at locations, not at lines of files: add a function breakpoint named after the location, "
    "such as tov:agents/forager.behavior#seek";

nlohmann::json unverified(const std::string& message)
{
    return {{"verified", false}, {"message", message}};
}

} // namespace

Reply Breakpoints::set(AbstractHost& host, const nlohmann::json& arguments)
{
    if (!arguments.is_object() || !arguments.contains("breakpoints") || !arguments["breakpoints"].is_array()) {
        return Reply::failure("the argument 'breakpoints' (an array) is missing or of another kind");
    }
    std::string error;
    if (!clear(host, error)) {
        return Reply::failure(error, true);
    }
    nlohmann::json answered = nlohmann::json::array();
    bool hostGone = false;
    for (const nlohmann::json& wanted : arguments["breakpoints"]) {
        answered.push_back(add(host, wanted, hostGone));
        if (hostGone) {
            return Reply::failure(answered.back()["message"].get<std::string>(), true);
        }
    }
    return Reply::success({{"breakpoints", answered}});
}

nlohmann::json Breakpoints::add(AbstractHost& host, const nlohmann::json& wanted, bool& hostGone)
{
    if (!wanted.is_object() || !wanted.contains("name") || !wanted["name"].is_string()) {
        return unverified("a function breakpoint needs a name: the location to stop at");
    }
    const std::string location = wanted["name"].get<std::string>();
    if (!isLocation(location)) {
        return unverified("'" + location +
                          "' is no location; a location is a URI such as tov:agents/forager.behavior#seek");
    }
    if (wanted.contains("condition") && wanted["condition"].is_string() &&
        !wanted["condition"].get<std::string>().empty()) {
        return unverified("the host cannot evaluate conditions; use a hit condition (a pass number) instead");
    }
    nlohmann::json filters = {{"location", location}};
    if (wanted.contains("hitCondition") && wanted["hitCondition"].is_string() &&
        !wanted["hitCondition"].get<std::string>().empty()) {
        long long count = 0;
        std::string reason;
        if (!readHitCondition(wanted["hitCondition"].get<std::string>(), count, reason)) {
            return unverified(reason);
        }
        filters["hitcount"] = count;
    }
    const nlohmann::json body = {{"type", "breakpoint"}, {"filters", filters}};
    HostAnswer answer;
    if (!host.call("POST", "events/subscriptions", &body, answer)) {
        hostGone = true;
        return unverified(answer.error);
    }
    if (answer.status != 200 || !answer.body.is_object() || !answer.body.contains("requestId") ||
        !answer.body["requestId"].is_number_unsigned()) {
        return unverified("the host refused the breakpoint: " +
                          (answer.error.empty() ? "no request id came back" : answer.error));
    }
    const unsigned int requestId = answer.body["requestId"].get<unsigned int>();
    locations[requestId] = location;
    made.insert(requestId);
    return {{"id", requestId}, {"verified", true}};
}

Reply Breakpoints::refuseLines(const nlohmann::json& arguments)
{
    nlohmann::json answered = nlohmann::json::array();
    if (arguments.is_object() && arguments.contains("breakpoints") && arguments["breakpoints"].is_array()) {
        for (std::size_t i = 0; i < arguments["breakpoints"].size(); ++i) {
            answered.push_back(unverified(useFunctionBreakpoints));
        }
    } else if (arguments.is_object() && arguments.contains("lines") && arguments["lines"].is_array()) {
        for (std::size_t i = 0; i < arguments["lines"].size(); ++i) {
            answered.push_back(unverified(useFunctionBreakpoints));
        }
    }
    return Reply::success({{"breakpoints", answered}});
}

bool Breakpoints::clear(AbstractHost& host, std::string& error)
{
    for (auto entry = locations.begin(); entry != locations.end();) {
        HostAnswer answer;
        if (!host.call("DELETE", "events/subscriptions/" + std::to_string(entry->first), nullptr, answer)) {
            error = answer.error;
            return false;
        }
        // A subscription already gone (the host restarted its server) is as good as ended.
        entry = locations.erase(entry);
    }
    return true;
}

bool Breakpoints::readHitCondition(const std::string& text, long long& count, std::string& reason)
{
    // "2" and ">= 2" mean the same to the host: from the second pass on; "> 1" is that too.
    std::string digits = text;
    long long add = 0;
    digits.erase(0, digits.find_first_not_of(" \t"));
    if (digits.compare(0, 2, ">=") == 0) {
        digits.erase(0, 2);
    } else if (!digits.empty() && digits[0] == '>') {
        digits.erase(0, 1);
        add = 1;
    }
    digits.erase(0, digits.find_first_not_of(" \t"));
    digits.erase(digits.find_last_not_of(" \t") + 1);
    bool valid = !digits.empty() && digits.size() <= 9;
    for (char c : digits) {
        valid = valid && std::isdigit(static_cast<unsigned char>(c));
    }
    count = valid ? std::stoll(digits) + add : 0;
    if (!valid || count < 1) {
        reason =
            "the host counts passes from one on and stops on every pass from the count: a hit condition is a number "
            "such as 2 or >= 2, not '" +
            text + "'";
        return false;
    }
    return true;
}

bool Breakpoints::isLocation(const std::string& text)
{
    // The host's own parser decides, as it will when the subscription arrives.
    utils::Uri uri;
    return !text.empty() && uri.set(text.c_str(), nullptr) && uri.getScheme() != nullptr && *uri.getScheme() != '\0';
}

} // namespace dap
} // namespace tov
