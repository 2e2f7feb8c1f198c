#pragma once
// deferAcceptUntilData: asks the system to hand this process the connections to a listening port only
// once their first bytes have arrived. The server gives each accepted connection a thread until it is
// answered; a client that connects and says nothing then holds no thread at all.
//   mg_start(...); deferAcceptUntilData(boundPort, 5);

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

// For the listening TCP sockets of this process on `port`; after `seconds` a silent connection is
// handed over all the same. Returns how many sockets were set.
unsigned int deferAcceptUntilData(unsigned int port, unsigned int seconds);

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
