#include "apps/dap/CurlHost.h"

namespace tov {
namespace dap {

namespace {
// Every exchange is bounded, so that a host that hangs shows as gone instead of freezing the editor.
const long exchangeMilliseconds = 5000;
} // namespace

CurlHost::CurlHost(const std::string& base, const std::string& authority, const std::string& token)
    : client(base, token, exchangeMilliseconds), authority(authority)
{
}

bool CurlHost::call(const std::string& method, const std::string& path, const nlohmann::json* body, HostAnswer& answer)
{
    answer = HostAnswer();
    client::HostReply reply;
    if (!client.exchange(method, client::HostClient::encodePath(path), body != nullptr ? body->dump() : std::string(),
                         reply)) {
        answer.error = client.getError();
        return false;
    }
    answer.status = reply.status;
    answer.body = nlohmann::json::parse(reply.body, nullptr, false);
    if (answer.body.is_discarded()) {
        answer.body = nullptr;
    }
    if (reply.status >= 300) {
        const std::string text = reply.getErrorText();
        answer.error = "the host answered " + std::to_string(reply.status) + (text.empty() ? "" : ": " + text);
    }
    return true;
}

} // namespace dap
} // namespace tov
