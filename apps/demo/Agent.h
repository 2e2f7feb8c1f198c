#pragma once
// Agent: one forager of the demo world. Its state is what the type manager knows of it (position,
// energy, goal, meals, age, generation), so that saving and loading go through the registered properties rather than
// through code that names each field; its random stream belongs to it alone, so a run repeats for a seed.
//   demo::registerAgentType(typeManager, logger);
//   demo::Agent agent(3, manager.createRandomStream(3));   agent.live(...);
//   if (agent.getAge() >= lifespan) agent.beReborn();   // a newborn under the same index

#include <tov/utils/All.h>

#include <string>

namespace demo {

class Agent : public tov::utils::StaticObject {
    TOV_STATIC_OBJECT

public:
    // The world is a square of this side; agents never leave it.
    static constexpr double worldSize = 100.0;
    // The energy every agent is born with.
    static constexpr double birthEnergy = 10.0;

    Agent(unsigned int index, const tov::utils::Random& random);

    unsigned int getIndex() const { return index; }
    tov::utils::Random& getRandom() { return random; }

    const double& getX() const { return x; }
    void setX(const double& value) { x = value; }
    const double& getY() const { return y; }
    void setY(const double& value) { y = value; }
    const double& getEnergy() const { return energy; }
    void setEnergy(const double& value) { energy = value; }
    const double& getGoalX() const { return goalX; }
    void setGoalX(const double& value) { goalX = value; }
    const double& getGoalY() const { return goalY; }
    void setGoalY(const double& value) { goalY = value; }
    const int& getMeals() const { return meals; }
    void setMeals(const int& value) { meals = value; }
    // Rounds lived since birth.
    const int& getAge() const { return age; }
    void setAge(const int& value) { age = value; }
    // 0 for the agents a world starts with, one more for each newborn that took the place.
    const int& getGeneration() const { return generation; }
    void setGeneration(const int& value) { generation = value; }

    // The behaviour's pieces; each is one frame of the agent's stack.
    bool hasGoal() const { return hasTarget; }
    void chooseGoal();
    // One stride towards the goal, paid in energy; true once the goal is reached.
    bool moveTowardsGoal();
    void eat();
    void growOlder() { ++age; }
    // The agent dies and a newborn takes its place: a fresh state (a place drawn from the agent's own
    // stream, so that a run still repeats for a seed), one generation on.
    void beReborn();

    // The agent's state as a property tree, through the type manager's properties: {"x":..,"y":..,...}.
    void writeState(tov::utils::DynamicObject& out, unsigned int property) const;
    // Reads back what writeState wrote; a missing property keeps its current value. False, with the
    // property named in `reason`, when one is not a number.
    bool readState(const tov::utils::DynamicObject& in, unsigned int property, std::string& reason);

private:
    unsigned int index;
    tov::utils::Random random;
    double x = 0.0;
    double y = 0.0;
    double energy = birthEnergy;
    double goalX = 0.0;
    double goalY = 0.0;
    int meals = 0;
    int age = 0;
    int generation = 0;
    bool hasTarget = false;
};

// Registers Agent and its properties; false (with the reason in the logger) when the manager refuses.
[[nodiscard]] bool registerAgentType(tov::utils::TypeManager& typeManager, tov::utils::AbstractLogger* logger);

} // namespace demo
