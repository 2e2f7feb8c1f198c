#pragma once
// ListeningAddress: checks the address a server is asked to listen on and turns it into the server's
// own notation. Only one address is accepted: a dotted IPv4 quad, an IPv6 address in brackets, or
// "localhost"; lists, ports and names are refused, so that a typo can never widen what listens.
//   ListeningAddress address;
//   if (address.parse("127.0.0.1", 0)) start(address.getListeningPorts());   // "127.0.0.1:0"

#include <tov/utils/String.h>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class ListeningAddress {
public:
    ListeningAddress();

    // False with `problem` telling why when the address or the port cannot be listened on.
    bool parse(const char* address, unsigned int port);
    // What parse found wrong: a sentence that quotes the refused text.
    const String& getProblem() const;

    // The server's option text, "127.0.0.1:8000" or "[::1]:8000".
    const String& getListeningPorts() const;
    // The address as a client names it in a Host header: "127.0.0.1", "[::1]".
    const String& getHostName() const;
    bool isIPv6() const;
    // Whether only this machine can connect.
    bool isLoopback() const;

private:
    bool refuse(const char* address, const char* reason);

    String listeningPorts;
    String hostName;
    String problem;
    bool ipv6;
    bool loopback;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
