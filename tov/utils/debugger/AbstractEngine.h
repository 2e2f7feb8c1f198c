#pragma once
// AbstractEngine: serves the part of the inspection resource tree that lies under its path. A host
// derives from it, registers it with the InspectionFramework and keeps it alive until it unregisters it.
//   class Clock : public AbstractEngine { public: Clock() : AbstractEngine("clock", true) {}
//       resources::Status retrieveResource(...) const override { builder.begin(); ...; return resources::Ok; } };

#include <tov/utils/Export.h>
#include <tov/utils/String.h>
#include <tov/utils/debugger/ResourceStatus.h>

namespace tov {
namespace utils {

class AbstractObjectBuilder;
class DynamicObject;

namespace debugger {

class EngineDebuggerFacade;

class TOV_UTILS_API AbstractEngine {
public:
    // `path` is copied; a null one makes an engine that no framework accepts.
    AbstractEngine(const char* path, bool enabled);
    virtual ~AbstractEngine();
    AbstractEngine(const AbstractEngine&) = delete;
    AbstractEngine& operator=(const AbstractEngine&) = delete;

    // Given by the framework on registration.
    virtual void setDebuggerFacade(EngineDebuggerFacade& facade);
    virtual void onEntitiesRegistration(const unsigned int* ids, unsigned int count);
    virtual void onEntitiesUnregistration(const unsigned int* ids, unsigned int count);

    // `path` and `length` delimit what follows the engine's own path in the request (not terminated at
    // `length`); `query` holds the request's parameters and may be null; the answer goes to `builder`.
    // The base versions know no resource.
    virtual resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject* query,
                                               AbstractObjectBuilder& builder) const;
    virtual resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                             AbstractObjectBuilder& builder);
    virtual resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                             AbstractObjectBuilder& builder);

    // Null only for an engine built with a null path.
    const char* getPath() const;
    bool isEnabled() const;
    // Calls doEnable only when the engine is disabled, doDisable only when it is enabled.
    void enable();
    void disable();

protected:
    // An override decides itself whether the flag changes; the base versions set it.
    virtual void doEnable(bool& enabled);
    virtual void doDisable(bool& enabled);

private:
    EngineDebuggerFacade* facade;
    String path;
    bool enabled;
    bool hasPath;
};

} // namespace debugger
} // namespace utils
} // namespace tov
