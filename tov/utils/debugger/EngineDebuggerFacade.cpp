#include <tov/utils/debugger/EngineDebuggerFacade.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/debugger/impl/InspectionFrameworkImpl.h>

namespace tov {
namespace utils {
namespace debugger {

EngineDebuggerFacade::EngineDebuggerFacade(impl::InspectionFrameworkImpl& framework) : framework(framework) {}

EngineDebuggerFacade::~EngineDebuggerFacade() = default;

void EngineDebuggerFacade::onEntitiesRegistration(AbstractEngine& engine, const unsigned int* entities,
                                                  unsigned int count)
{
    framework.onEntitiesRegistration(engine, entities, count);
}

void EngineDebuggerFacade::onEntitiesUnregistration(AbstractEngine& engine, const unsigned int* entities,
                                                    unsigned int count)
{
    framework.onEntitiesUnregistration(engine, entities, count);
}

unsigned int EngineDebuggerFacade::countContexts(unsigned int entity) const
{
    return framework.countContexts(entity);
}

AbstractContext* EngineDebuggerFacade::topContext(unsigned int entity, AbstractLogger* logger)
{
    return framework.topContext(entity, logger);
}

AbstractContext* EngineDebuggerFacade::getContext(unsigned int entity, unsigned int index, AbstractLogger* logger)
{
    return framework.getContext(entity, index, logger);
}

void EngineDebuggerFacade::pushContext(AbstractEngine& engine, unsigned int entity, AbstractContextFactory& factory)
{
    framework.pushContext(engine, entity, factory);
}

AbstractContext* EngineDebuggerFacade::popContext(AbstractEngine& engine, unsigned int entity)
{
    return framework.popContext(engine, entity);
}

void EngineDebuggerFacade::invalidateContexts(const AbstractEngine& engine)
{
    framework.invalidateContexts(engine);
}

Vector<AbstractContext*> EngineDebuggerFacade::cleanRelatedContexts(const AbstractEngine& engine)
{
    return framework.cleanRelatedContexts(engine);
}

void EngineDebuggerFacade::accept(AbstractEventRequestVisitor& visitor)
{
    framework.getRegistry().accept(visitor);
}

EngineDebuggerFacade::FilterCreators& EngineDebuggerFacade::getEventRequestFilterCreator()
{
    return filterCreators;
}

AbstractLogger& EngineDebuggerFacade::getLogger()
{
    return framework.getFacilities().getLogger();
}

} // namespace debugger
} // namespace utils
} // namespace tov
