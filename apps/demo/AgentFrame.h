#pragma once
// AgentFrame: one frame of an agent's behaviour as the debugger shows it: its location and the agent's
// state ({"agent":3,"position":{"x":..,"y":..},"energy":..,"target":{"x":..,"y":..}}). The agent's
// thread refreshes it while the inspector's thread reads it, so the content has a lock of its own.
//   AgentFrameFactory factory(seekLocation, agent);   facade.pushContext(engine, 3, factory);
//   factory.getCreated()->refresh(agent);

#include "Agent.h"

#include <tov/utils/debugger/All.h>

#include <mutex>

namespace demo {

class AgentFrame : public tov::utils::debugger::AbstractContext {
public:
    AgentFrame(const tov::utils::Uri& location, const Agent& agent);

    const tov::utils::Uri& getLocation() const override { return location; }
    void invalidate() override;
    void accept(tov::utils::debugger::AbstractContextVisitor& visitor) const override;

    void refresh(const Agent& agent);

private:
    const tov::utils::Uri& location;
    mutable std::mutex mutex;
    tov::utils::DynamicObject content;
    bool valid = true;
};

class AgentFrameFactory : public tov::utils::debugger::AbstractContextFactory {
public:
    // `location` must outlive every frame made (the simulation keeps its locations to the end).
    AgentFrameFactory(const tov::utils::Uri& location, const Agent& agent) : location(location), agent(agent) {}

    tov::utils::debugger::AbstractContext* create() override;
    // The frame of the last create, which the debugger now holds; null before.
    AgentFrame* getCreated() const { return created; }

private:
    const tov::utils::Uri& location;
    const Agent& agent;
    AgentFrame* created = nullptr;
};

} // namespace demo
