#pragma once
// DebuggerFramework: the engine at "debug" of the inspection tree. It lists the entities that engines
// registered and the stack of contexts of each, and turns commands (suspend, resume, step in, over and
// out) into conditions that the simulation's own threads stop at, at their next change of context.
//   DebuggerFramework& debugger = framework.getDebugger();
//   if (debugger.suspend()) { ... }   // the next context change of any entity stops its thread
//   debugger.resume();

#include <tov/utils/Export.h>
#include <tov/utils/debugger/AbstractEngine.h>

#include <limits>

namespace tov {
namespace utils {

class AbstractLogger;

namespace debugger {

class AbstractContext;
class ExecutionController;

namespace impl {
class InspectionFrameworkImpl;
}

// The entity that stands for none.
constexpr unsigned int invalidEntity = std::numeric_limits<unsigned int>::max();

class TOV_UTILS_API DebuggerFramework : public AbstractEngine {
public:
    explicit DebuggerFramework(impl::InspectionFrameworkImpl& framework);
    ~DebuggerFramework() override;

    ExecutionController& getExecutionController();
    const ExecutionController& getExecutionController() const;

    // Entities in order of registration; a batch that was registered twice shows twice.
    unsigned int countEntities() const;
    // Valid until the next registration.
    const unsigned int* getEntities() const;
    unsigned int countContexts(unsigned int entity) const;
    // The frame at `index` from the bottom, or null with a message to `logger` (which may be null).
    [[nodiscard]] const AbstractContext* getContext(unsigned int entity, unsigned int index,
                                                    AbstractLogger* logger) const;

    // Each command arms a condition, first clearing whatever was armed; false when the state refuses it:
    // suspend and suspendEntity need the simulation running, the steps need it suspended.
    [[nodiscard]] bool suspend();
    [[nodiscard]] bool suspendEntity(unsigned int entity);
    // The entity of the last stop while suspended; invalidEntity while running.
    unsigned int getSuspendedEntity() const;
    // Always resumes; tells whether the simulation was suspended.
    bool resume();
    bool isSuspended() const;
    [[nodiscard]] bool stepIn();
    [[nodiscard]] bool stepOut();
    [[nodiscard]] bool stepOver();

    resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject* query,
                                       AbstractObjectBuilder& builder) const override;
    resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder) override;
    // The tree has nothing to delete.
    resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder) override;

protected:
    // Disabling the debugger lets a suspended simulation go.
    void doDisable(bool& enabled) override;

private:
    using Command = bool (DebuggerFramework::*)();
    using Step = void (impl::InspectionFrameworkImpl::*)();

    // A step needs a stopped simulation.
    bool stepWhileSuspended(Step step);

    resources::Status retrieveGeneralInfo(AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntitiesResources(const char* path, unsigned int length,
                                                AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntityResources(unsigned int entity, const char* path, unsigned int length,
                                              AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntityContextsResources(unsigned int entity, const char* path, unsigned int length,
                                                      AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntities(AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntity(unsigned int entity, AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntityContexts(unsigned int entity, AbstractObjectBuilder& builder) const;
    resources::Status retrieveEntityContext(unsigned int entity, unsigned int index,
                                            AbstractObjectBuilder& builder) const;
    resources::Status retrieveIsSuspended(AbstractObjectBuilder& builder) const;
    bool writeContexts(unsigned int entity, AbstractObjectBuilder& builder) const;
    resources::Status createNoParametersCommand(AbstractObjectBuilder& builder, Command command);
    resources::Status createSuspendCommand(AbstractObjectBuilder& builder, const DynamicObject* data);

    impl::InspectionFrameworkImpl& framework;
};

} // namespace debugger
} // namespace utils
} // namespace tov
