#pragma once
// AbstractHost: the calls that tov-dap makes on a host's inspector, one resource path below /api/ at a
// time, so that the adapter's logic can be driven without a network.
//   HostAnswer answer;
//   if (host.call("GET", "debug/entities", nullptr, answer) && answer.status == 200) use(answer.body);

#include <nlohmann/json.hpp>

#include <string>

namespace tov {
namespace dap {

// NOLINTNEXTLINE(bugprone-exception-escape): a failed allocation of a member ends the adapter anyway.
struct HostAnswer {
    long status = 0;
    nlohmann::json body; // null when the reply held no JSON
    std::string error;   // why no reply came, or the text of a refusal
};

class AbstractHost {
public:
    virtual ~AbstractHost() = default;
    // False when the host gave no reply at all (it went away); a refusal is a reply, with its status.
    virtual bool call(const std::string& method, const std::string& path, const nlohmann::json* body,
                      HostAnswer& answer) = 0;
    // "127.0.0.1:8000", for messages.
    virtual std::string describe() const = 0;
};

} // namespace dap
} // namespace tov
