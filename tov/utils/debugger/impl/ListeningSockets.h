#pragma once
// ListeningSockets: what the server cannot be asked through its own interface about the sockets it
// listens on. Found among the process's open descriptors by their port: a listening socket on the port
// that the server has bound can only be the server's.
//   mg_start(...); ListeningSockets::deferAcceptUntilData(port, 5);
//   ListeningSockets::shutDown(port); mg_stop(...);   // returns at once

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

class ListeningSockets {
public:
    // Connections to `port` are handed to the server only once their first bytes arrive, or after
    // `seconds`. The server gives each accepted connection a thread until it is answered: a client that
    // connects and says nothing then holds none. Returns how many sockets were set.
    static unsigned int deferAcceptUntilData(unsigned int port, unsigned int seconds);
    // Stops listening on `port`. The server's listening thread looks for the end of the server only
    // between waits of two seconds for a connection; this ends its wait at once.
    static unsigned int shutDown(unsigned int port);

private:
    template <typename Action>
    static unsigned int forEach(unsigned int port, Action action);
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
