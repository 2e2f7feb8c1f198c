#pragma once
// The commands of tov-inspect on the host's debugger: its entities, their frames, and the suspension and
// stepping of the simulation. Each takes what the command line gave, checked for count and options, and
// returns the exit status.
//   Arguments given; given.positional = {"3"};
//   showStack(session, given);   // "INDEX  LOCATION", then one line a frame of entity 3, bottom first

namespace tov {
namespace inspect {

class Session;
struct Arguments;

int listEntities(Session& session, const Arguments& arguments);
int showStack(Session& session, const Arguments& arguments);
int showContext(Session& session, const Arguments& arguments);
int showStatus(Session& session, const Arguments& arguments);
int waitSuspended(Session& session, const Arguments& arguments);
int suspend(Session& session, const Arguments& arguments);
int resume(Session& session, const Arguments& arguments);
int step(Session& session, const Arguments& arguments);

} // namespace inspect
} // namespace tov
