#pragma once
// Server: runs Debug Adapter Protocol sessions over a byte stream: standard input and output, or the
// connections that an editor makes to a listening port, one session after another.
//   Server server(std::cerr);
//   return server.serveStandardStreams();              // or server.listen(4711)

#include <csignal>
#include <ostream>

namespace tov {
namespace dap {

class Server {
public:
    explicit Server(std::ostream& log) : log(log) {}
    // Set by a signal handler: the session leaves the host as a disconnect would, and the server ends.
    static volatile std::sig_atomic_t stopping;
    // One session on descriptors 0 and 1; the exit status of the program.
    int serveStandardStreams();
    // Sessions on 127.0.0.1:`port` (0: a free port, printed) until the process is ended.
    int listen(unsigned int port);

private:
    // One session until disconnect or the end of the input stream.
    void serve(int input, int output);

    std::ostream& log;
};

} // namespace dap
} // namespace tov
