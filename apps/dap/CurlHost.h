#pragma once
// CurlHost: the host's inspector reached over HTTP through the clients' shared HostClient.
//   CurlHost host("http://127.0.0.1:8000", "127.0.0.1:8000", token);
//   HostAnswer answer;  host.call("POST", "debug/resume", nullptr, answer);

#include "apps/common/HostClient.h"
#include "apps/dap/AbstractHost.h"

namespace tov {
namespace dap {

class CurlHost : public AbstractHost {
public:
    CurlHost(const std::string& base, const std::string& authority, const std::string& token);
    bool call(const std::string& method, const std::string& path, const nlohmann::json* body,
              HostAnswer& answer) override;
    std::string describe() const override { return authority; }

private:
    client::HostClient client;
    std::string authority;
};

} // namespace dap
} // namespace tov
