#include "Agent.h"

#include <cmath>

namespace demo {

TOV_STATIC_OBJECT_DEFINE_IDENTITY(Agent, "demo::Agent", "8b6f2d1e-4c3a-4e7b-9f10-2a5d6c7e8f90")

bool Agent::internalSetMetadata(tov::utils::TypeManager& typeManager, tov::utils::AbstractLogger* logger)
{
    // No key is the start of another: a key matches the first property whose name starts with it.
    return typeManager.addBaseType(getClassTypeId(), StaticObject::getClassTypeId(), logger) &&
           typeManager.registerProperty("x", &Agent::getX, &Agent::setX, logger) &&
           typeManager.registerProperty("y", &Agent::getY, &Agent::setY, logger) &&
           typeManager.registerProperty("energy", &Agent::getEnergy, &Agent::setEnergy, logger) &&
           typeManager.registerProperty("goalX", &Agent::getGoalX, &Agent::setGoalX, logger) &&
           typeManager.registerProperty("goalY", &Agent::getGoalY, &Agent::setGoalY, logger) &&
           typeManager.registerProperty("meals", &Agent::getMeals, &Agent::setMeals, logger);
}

bool registerAgentType(tov::utils::TypeManager& typeManager, tov::utils::AbstractLogger* logger)
{
    return typeManager.registerType<Agent>(logger);
}

namespace {

const double stride = 2.5;
const double strideCost = 0.25;
const double mealEnergy = 4.0;

// A coordinate inside the world, in hundredths, from the agent's own stream.
double drawCoordinate(tov::utils::Random& random)
{
    return random(0, static_cast<unsigned int>(Agent::worldSize * 100)) / 100.0;
}

} // namespace

Agent::Agent(unsigned int index, const tov::utils::Random& random) : index(index), random(random)
{
    x = drawCoordinate(this->random);
    y = drawCoordinate(this->random);
}

void Agent::chooseGoal()
{
    goalX = drawCoordinate(random);
    goalY = drawCoordinate(random);
    hasTarget = true;
}

bool Agent::moveTowardsGoal()
{
    const double dx = goalX - x;
    const double dy = goalY - y;
    const double distance = std::sqrt(dx * dx + dy * dy);
    energy = energy > strideCost ? energy - strideCost : 0.0;
    if (distance <= stride) {
        x = goalX;
        y = goalY;
        return true;
    }
    x += dx / distance * stride;
    y += dy / distance * stride;
    return false;
}

void Agent::eat()
{
    energy += mealEnergy;
    ++meals;
    hasTarget = false;
}

void Agent::writeState(tov::utils::DynamicObject& out, unsigned int property) const
{
    const tov::utils::TypeManager& types = tov::utils::Facilities::instance().getTypeManager();
    const unsigned int count = types.countProperties(getClassTypeId());
    for (unsigned int i = 0; i < count; ++i) {
        const tov::utils::Property& p = types.getProperty(getClassTypeId(), i);
        const unsigned int child = out.addChild(property, p.getKey());
        if (child == 0) {
            continue;
        }
        if (p.isReal()) {
            out.setReal(child, *p.get<Agent, double>(*this));
        } else if (p.isInt()) {
            out.setInt(child, *p.get<Agent, int>(*this));
        }
    }
}

bool Agent::readState(const tov::utils::DynamicObject& in, unsigned int property, std::string& reason)
{
    const tov::utils::TypeManager& types = tov::utils::Facilities::instance().getTypeManager();
    const unsigned int count = types.countProperties(getClassTypeId());
    // Input from a file: the reader refuses a wrong kind where the object's getters would assert.
    const tov::utils::DynamicObjectReader reader(in);
    for (unsigned int i = 0; i < count; ++i) {
        const tov::utils::Property& p = types.getProperty(getClassTypeId(), i);
        const unsigned int child = in.getChild(property, p.getKey());
        double value = 0;
        if (child == 0) {
            continue;
        }
        if (!reader.readReal(child, value, nullptr)) {
            reason = std::string("'") + p.getKey() + "' is not a number";
            return false;
        }
        if (p.isReal()) {
            p.set(*this, value);
        } else if (p.isInt()) {
            p.set(*this, static_cast<int>(value));
        }
    }
    hasTarget = goalX != x || goalY != y;
    return true;
}

} // namespace demo
