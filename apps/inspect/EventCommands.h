#pragma once
// The commands of tov-inspect on the host's events: subscriptions, breakpoints among them, and the queue
// of what they reported. Each takes what the command line gave, checked for count and options, and
// returns the exit status.
//   Arguments given; given.positional = {"suspension"};
//   subscribe(session, given);   // "suspension request 4"

namespace tov {
namespace inspect {

class Session;
struct Arguments;

int subscribe(Session& session, const Arguments& arguments);
int setBreakpoint(Session& session, const Arguments& arguments);
int unsubscribe(Session& session, const Arguments& arguments);
int showEvents(Session& session, const Arguments& arguments);

} // namespace inspect
} // namespace tov
