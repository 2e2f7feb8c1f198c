#include "apps/dap/Server.h"

#include "apps/dap/Channel.h"
#include "apps/dap/FrameReader.h"
#include "apps/dap/Session.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tov {
namespace dap {

namespace {
// How long the session waits for the editor before it looks at the host again.
const int tickMilliseconds = 50;
} // namespace

volatile std::sig_atomic_t Server::stopping = 0;

int Server::serveStandardStreams()
{
    serve(0, 1);
    return 0;
}

void Server::serve(int input, int output)
{
    Channel channel(output);
    Session session(channel, log);
    FrameReader reader;
    FrameReader::Frame frame;
    const auto deliver = [&session, &frame] {
        if (!frame.problem.empty()) {
            session.logLine(frame.problem);
        }
        if (!frame.body.empty()) {
            session.handle(frame.body);
        }
    };
    while (!session.isOver() && channel.isOpen() && stopping == 0) {
        pollfd waiting{input, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, tickMilliseconds);
        if (ready > 0) {
            char bytes[65536];
            const ssize_t count = ::read(input, bytes, sizeof bytes);
            if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
                continue;
            }
            if (count <= 0) {
                while (reader.finish(frame)) {
                    deliver();
                }
                break;
            }
            reader.append(bytes, static_cast<std::size_t>(count));
            while (!session.isOver() && reader.next(frame)) {
                deliver();
            }
        }
        session.tick();
    }
    session.end();
}

int Server::listen(unsigned int port)
{
    // Close-on-exec, so that a host launched by a session does not hold the adapter's sockets.
    const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int yes = 1;
    ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    // The adapter drives the host for whoever connects: only this machine may.
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (listener < 0 || ::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener, 4) != 0 || ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        log << "tov-dap: cannot listen on 127.0.0.1:" << port << ": " << std::strerror(errno) << std::endl;
        if (listener >= 0) {
            ::close(listener);
        }
        return 1;
    }
    log << "tov-dap: listening on 127.0.0.1:" << ntohs(address.sin_port) << std::endl;
    while (stopping == 0) {
        const int connection = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) {
            if (errno == EINTR || errno == ECONNABORTED) {
                continue;
            }
            log << "tov-dap: cannot accept a connection: " << std::strerror(errno) << std::endl;
            ::close(listener);
            return 1;
        }
        serve(connection, connection);
        ::close(connection);
    }
    ::close(listener);
    return 0;
}

} // namespace dap
} // namespace tov
