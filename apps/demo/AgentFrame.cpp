#include "AgentFrame.h"

namespace demo {

AgentFrame::AgentFrame(const tov::utils::Uri& location, const Agent& agent) : location(location)
{
    refresh(agent);
}

void AgentFrame::invalidate()
{
    std::lock_guard<std::mutex> guard(mutex);
    valid = false;
}

void AgentFrame::accept(tov::utils::debugger::AbstractContextVisitor& visitor) const
{
    std::lock_guard<std::mutex> guard(mutex);
    if (valid) {
        visitor.visit(content);
    }
}

void AgentFrame::refresh(const Agent& agent)
{
    std::lock_guard<std::mutex> guard(mutex);
    content.setInt("agent", agent.getIndex());
    content.setReal("position.x", agent.getX());
    content.setReal("position.y", agent.getY());
    content.setReal("energy", agent.getEnergy());
    content.setReal("target.x", agent.getGoalX());
    content.setReal("target.y", agent.getGoalY());
}

tov::utils::debugger::AbstractContext* AgentFrameFactory::create()
{
    created = TOV_NEW AgentFrame(location, agent);
    return created;
}

} // namespace demo
