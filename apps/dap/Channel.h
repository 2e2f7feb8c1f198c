#pragma once
// Channel: writes Debug Adapter Protocol messages to the editor, each as a Content-Length header and
// its JSON body, numbering them. A peer that closed its end leaves the channel closed, not the process
// dead (SIGPIPE is ignored by main).
//   Channel channel(1);
//   channel.send({{"type", "event"}, {"event", "initialized"}});   // seq is filled in

#include <nlohmann/json.hpp>

namespace tov {
namespace dap {

class Channel {
public:
    explicit Channel(int descriptor) : descriptor(descriptor) {}
    // False once the peer is gone.
    bool send(nlohmann::json message);
    bool isOpen() const { return open; }

private:
    bool writeAll(const char* bytes, std::size_t count);

    int descriptor;
    long long sequence = 1;
    bool open = true;
};

} // namespace dap
} // namespace tov
