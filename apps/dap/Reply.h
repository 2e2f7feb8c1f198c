#pragma once
// Reply: what a request handler gives back: a body for a success, or the message of a refusal.
//   return Reply::success({{"threads", list}});      return Reply::failure("no such frame 12");

#include <nlohmann/json.hpp>

#include <string>

namespace tov {
namespace dap {

struct Reply {
    bool ok = true;
    nlohmann::json body = nlohmann::json::object();
    std::string message;
    // True when the refusal came because the host gave no reply at all.
    bool hostGone = false;

    static Reply success(nlohmann::json body = nlohmann::json::object())
    {
        Reply reply;
        reply.body = std::move(body);
        return reply;
    }
    static Reply failure(std::string message, bool hostGone = false)
    {
        Reply reply;
        reply.ok = false;
        reply.message = std::move(message);
        reply.hostGone = hostGone;
        return reply;
    }
};

} // namespace dap
} // namespace tov
