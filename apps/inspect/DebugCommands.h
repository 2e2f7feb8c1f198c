#pragma once
// The commands of tov-inspect that look at and drive the debugger: entities, their frames, the state of
// the simulation, suspend, resume and step.

#include <string>

namespace tov {
namespace inspect {

class Session;

int listEntities(Session& session);
int showStack(Session& session, unsigned int entity);
int showContext(Session& session, unsigned int entity, unsigned int index);
int showStatus(Session& session);
int waitSuspended(Session& session, double timeoutSeconds);
// `entity` < 0 stops every entity.
int suspend(Session& session, long long entity);
int resume(Session& session);
// `kind` is in, over or out; unless `wait` is false, waits up to `timeoutSeconds` for the stop that
// the step ends in and prints where it is.
int step(Session& session, const std::string& kind, bool wait, double timeoutSeconds);

} // namespace inspect
} // namespace tov
