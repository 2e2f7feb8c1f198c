#pragma once
// A host's classes as the type tests use them: Agent, derived from StaticObject, Forager, derived from
// Agent, each with properties that its own metadata setter registers, and Scout, which only derives.

#include <tov/utils/BufferLogger.h>
#include <tov/utils/StaticObject.h>
#include <tov/utils/TypeManager.h>
#include <tov/utils/Vector3.h>

#include <string>
#include <vector>

namespace sim {

class Agent : public tov::utils::StaticObject {
    TOV_STATIC_OBJECT

public:
    const double& getEnergy() const { return energy; }
    void setEnergy(const double& value) { energy = value; }
    const int& getAge() const { return age; }
    void setAge(const int& value) { age = value; }

private:
    double energy = 1.0;
    int age = 0;
};

class Forager : public Agent {
    TOV_STATIC_OBJECT

public:
    const double& getSpeed() const { return speed; }
    void setSpeed(const double& value) { speed = value; }
    const tov::utils::Vector3<double>& getHeading() const { return heading; }
    void setHeading(const tov::utils::Vector3<double>& value) { heading = value; }
    const double& getEyesight() const { return eyesight; }
    void setEyesight(const double& value) { eyesight = value; }

private:
    double speed = 0.0;
    tov::utils::Vector3<double> heading;
    double eyesight = 10.0;
};

// Nothing of its own: its metadata only names its base.
class Scout : public Forager {
    TOV_STATIC_OBJECT
};

// Makes a Forager; what a host registers under Forager's id.
class ForagerCreator : public tov::utils::TypeManager::StaticObjectCreator {
public:
    tov::utils::StaticObject* operator()(tov::utils::AbstractLogger* logger) const override;
};

} // namespace sim

namespace tov {
namespace testing {

// The messages of a logger as texts, in order.
std::vector<std::string> textsOf(const utils::BufferLogger& logger);

// The Uuid text of a literal written as the library writes it (lower case).
std::string idText(const utils::Uuid& id);

} // namespace testing
} // namespace tov
