#include <tov/utils/debugger/impl/ListeningAddress.h>

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

ListeningAddress::ListeningAddress() : ipv6(false), loopback(false) {}

bool ListeningAddress::refuse(const char* address, const char* reason)
{
    OStringStream text;
    text << "The inspection HTTP server cannot listen on '" << address << "': " << reason;
    problem = text.str();
    return false;
}

// inet_pton is strict where the server's own parser is lenient: four decimal parts of 0 to 255, no
// leading zeros, nothing behind. The server would read "256.0.0.0" as every interface and a comma as a
// second listener.
bool ListeningAddress::parse(const char* address, unsigned int port)
{
    const char* const expected =
        "an address is an IPv4 address such as 127.0.0.1, an IPv6 address in brackets such as [::1], or localhost.";
    if (address == nullptr) {
        address = "";
    }
    if (port > 65535) {
        OStringStream reason;
        reason << "port " << port << " is above 65535.";
        return refuse(address, reason.str().c_str());
    }
    String host = address;
    if (host == "localhost") {
        host = "127.0.0.1";
    }
    in_addr ipv4Address{};
    in6_addr ipv6Address{};
    const std::size_t length = host.size();
    if (length > 2 && host[0] == '[' && host[length - 1] == ']' &&
        inet_pton(AF_INET6, host.substr(1, length - 2).c_str(), &ipv6Address) == 1) {
        // QUIRK(ipv6-checked-not-served): an IPv6 address passes this check but fails the start, as the
        // embedded server is built without IPv6; the check stays ready for a server that has it.
        ipv6 = true;
        loopback = IN6_IS_ADDR_LOOPBACK(&ipv6Address);
    } else if (inet_pton(AF_INET, host.c_str(), &ipv4Address) == 1) {
        ipv6 = false;
        loopback = (ntohl(ipv4Address.s_addr) >> 24) == 127;
    } else {
        return refuse(address, expected);
    }
    hostName = host;
    OStringStream ports;
    ports << host << ':' << port;
    listeningPorts = ports.str();
    problem.clear();
    return true;
}

const String& ListeningAddress::getProblem() const
{
    return problem;
}

const String& ListeningAddress::getListeningPorts() const
{
    return listeningPorts;
}

const String& ListeningAddress::getHostName() const
{
    return hostName;
}

bool ListeningAddress::isIPv6() const
{
    return ipv6;
}

bool ListeningAddress::isLoopback() const
{
    return loopback;
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
