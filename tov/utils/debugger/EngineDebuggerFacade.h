#pragma once
// EngineDebuggerFacade: how an engine tells the debugger what it runs. It registers the entities it
// executes and pushes and pops a context for every frame an entity enters and leaves; each push and pop
// is where a suspended or stepped entity stops. Engines receive it on registration.
//   void setDebuggerFacade(EngineDebuggerFacade& f) override { AbstractEngine::setDebuggerFacade(f); facade = &f; }
//   facade->pushContext(*this, agent, frameFactory);  ...  TOV_DELETE(facade->popContext(*this, agent));

#include <tov/utils/Containers.h>
#include <tov/utils/CreatorAbstractFactory.h>
#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/debugger/AbstractEventFilterFactory.h>

namespace tov {
namespace utils {

class AbstractLogger;

namespace debugger {

class AbstractContext;
class AbstractContextFactory;
class AbstractEngine;
class AbstractEventRequestVisitor;

namespace impl {
class InspectionFrameworkImpl;
}

class TOV_UTILS_API EngineDebuggerFacade {
public:
    using FilterCreators = CreatorAbstractFactory<String, AbstractEventFilterFactory>;

    explicit EngineDebuggerFacade(impl::InspectionFrameworkImpl& framework);
    ~EngineDebuggerFacade();
    EngineDebuggerFacade(const EngineDebuggerFacade&) = delete;
    EngineDebuggerFacade& operator=(const EngineDebuggerFacade&) = delete;

    // Each new entity gets a bottom frame at "tov:simulation" and a registration event. A batch holding
    // any unknown id is appended whole, the known ids included.
    void onEntitiesRegistration(AbstractEngine& engine, const unsigned int* entities, unsigned int count);
    // Each entity must be back to its bottom frame; unknown ids are skipped.
    void onEntitiesUnregistration(AbstractEngine& engine, const unsigned int* entities, unsigned int count);

    unsigned int countContexts(unsigned int entity) const;
    // Null, with a message to `logger` (which may be null), for an unknown entity or an empty stack.
    [[nodiscard]] AbstractContext* topContext(unsigned int entity, AbstractLogger* logger);
    // The frame at `index` from the bottom, or null with a message.
    [[nodiscard]] AbstractContext* getContext(unsigned int entity, unsigned int index, AbstractLogger* logger);
    // The entity must be registered. The engine owns the new frame; the call returns only once the
    // entity may run on, so it may block for as long as the debugger keeps the entity stopped.
    void pushContext(AbstractEngine& engine, unsigned int entity, AbstractContextFactory& factory);
    // Returns the top frame, now the caller's to destroy; may block as pushContext does.
    AbstractContext* popContext(AbstractEngine& engine, unsigned int entity);
    // The engine's frames stop showing content and its pushes and pops stop nothing, until cleaned.
    // Neither takes a lock: the engine calls them while no thread pushes on its behalf.
    void invalidateContexts(const AbstractEngine& engine);
    // Takes the engine's frames off every stack and hands them back for the engine to destroy.
    Vector<AbstractContext*> cleanRelatedContexts(const AbstractEngine& engine);

    // Fires an event: the visitor is offered every subscription.
    void accept(AbstractEventRequestVisitor& visitor);
    // The factories of breakpoint filters, by their name in a subscription's JSON.
    FilterCreators& getEventRequestFilterCreator();
    AbstractLogger& getLogger();

private:
    impl::InspectionFrameworkImpl& framework;
    FilterCreators filterCreators;
};

} // namespace debugger
} // namespace utils
} // namespace tov
