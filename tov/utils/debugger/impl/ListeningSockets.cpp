#include <tov/utils/debugger/impl/ListeningSockets.h>

#include <dirent.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cstdlib>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

bool isListeningOn(int descriptor, unsigned int port)
{
    int listening = 0;
    socklen_t size = sizeof(listening);
    if (getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listening, &size) != 0 || listening == 0) {
        return false;
    }
    sockaddr_storage address{};
    socklen_t addressSize = sizeof(address);
    if (getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &addressSize) != 0) {
        return false;
    }
    if (address.ss_family == AF_INET) {
        return ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port) == port;
    }
    if (address.ss_family == AF_INET6) {
        return ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port) == port;
    }
    return false;
}

} // namespace

template <typename Action>
unsigned int ListeningSockets::forEach(unsigned int port, Action action)
{
    DIR* descriptors = opendir("/proc/self/fd");
    if (descriptors == nullptr) {
        return 0;
    }
    unsigned int count = 0;
    while (const dirent* entry = readdir(descriptors)) {
        const int descriptor = std::atoi(entry->d_name);
        if (descriptor != dirfd(descriptors) && isListeningOn(descriptor, port) && action(descriptor)) {
            ++count;
        }
    }
    closedir(descriptors);
    return count;
}

unsigned int ListeningSockets::deferAcceptUntilData(unsigned int port, unsigned int seconds)
{
    const int value = static_cast<int>(seconds);
    return forEach(port, [value](int descriptor) {
        return setsockopt(descriptor, IPPROTO_TCP, TCP_DEFER_ACCEPT, &value, sizeof(value)) == 0;
    });
}

unsigned int ListeningSockets::shutDown(unsigned int port)
{
    return forEach(port, [](int descriptor) { return shutdown(descriptor, SHUT_RDWR) == 0; });
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
