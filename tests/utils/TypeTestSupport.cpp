#include "utils/TypeTestSupport.h"

#include <tov/utils/Memory.h>

namespace sim {

TOV_STATIC_OBJECT_DEFINE_IDENTITY(Agent, "sim::Agent", "3d1c59a0-6b7e-4f0e-9a51-2f4c8e7d9b10")

// The pattern lets a class state more than its base: here its properties.
bool Agent::internalSetMetadata(tov::utils::TypeManager& typeManager, tov::utils::AbstractLogger* logger)
{
    return typeManager.addBaseType(getClassTypeId(), StaticObject::getClassTypeId(), logger) &&
           typeManager.registerProperty("energy", &Agent::getEnergy, &Agent::setEnergy, logger) &&
           typeManager.registerProperty("age", &Agent::getAge, &Agent::setAge, logger);
}

TOV_STATIC_OBJECT_DEFINE_IDENTITY(Forager, "sim::Forager", "5F0C6AD2-8E1B-4C3A-B7D4-91E2F3A4B5C6")

bool Forager::internalSetMetadata(tov::utils::TypeManager& typeManager, tov::utils::AbstractLogger* logger)
{
    return typeManager.addBaseType(getClassTypeId(), Agent::getClassTypeId(), logger) &&
           typeManager.registerProperty("speed", &Forager::getSpeed, &Forager::setSpeed, logger) &&
           typeManager.registerProperty("heading", &Forager::getHeading, &Forager::setHeading, logger) &&
           typeManager.registerProperty("eyesight", &Forager::getEyesight, &Forager::setEyesight, logger);
}

TOV_STATIC_OBJECT_DEFINE_DERIVED(Scout, Forager, "sim::Scout", "c2a7e9d4-1f36-4b85-a0c1-7d2e4f6a8b93")

tov::utils::StaticObject* ForagerCreator::operator()(tov::utils::AbstractLogger*) const
{
    return TOV_NEW Forager();
}

} // namespace sim

namespace tov {
namespace testing {

std::vector<std::string> textsOf(const utils::BufferLogger& logger)
{
    std::vector<std::string> texts;
    for (const auto& message : logger.getMessages()) {
        texts.emplace_back(message.message.c_str());
    }
    return texts;
}

std::string idText(const utils::Uuid& id)
{
    char text[37];
    id.computeString(text);
    return text;
}

} // namespace testing
} // namespace tov
