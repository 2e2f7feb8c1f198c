#pragma once
// EventFramework: the engine at "events", which gives a client over HTTP what AbstractEventListener gives
// to code. It subscribes on the client's behalf, queues what the subscriptions report, and lets the client
// list, read and delete the queued events; nothing is pushed. The HTTP server makes one for each run.
//   POST /api/events/subscriptions {"type":"breakpoint","filters":{"location":"tov:agents/forager.behavior#seek"}}
//   GET /api/events   -> [0,1]      GET /api/events/0   -> {"id":0,"type":"breakpoint","requestId":1,...}
//   DELETE /api/events/0            DELETE /api/events/subscriptions

#include <tov/utils/Containers.h>
#include <tov/utils/Mutex.h>
#include <tov/utils/Uri.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/AbstractEventListener.h>

namespace tov {
namespace utils {
namespace debugger {

class InspectionFramework;

namespace impl {

struct PathSegment;

class EventFramework : public AbstractEngine, public AbstractEventListener {
public:
    // The order of the codes matters: from suspension on an event has an entity, from breakpoint on
    // also a location.
    enum EventType : unsigned int {
        initialization = 0,
        termination,
        disconnection,
        suspension,
        registration,
        unregistration,
        breakpoint,
    };

    struct Event {
        unsigned int identifier;
        EventType type;
        unsigned int requestId;
        // 0 for the types without an entity.
        unsigned int entity;
        // Empty but for breakpoints.
        Uri location;
    };

    explicit EventFramework(InspectionFramework& framework);
    // Ends every subscription of the framework, also those of other listeners.
    ~EventFramework() override;

    // Registers the filter factories of breakpoint subscriptions with the facade, replacing those of
    // an earlier run of the server.
    void setDebuggerFacade(EngineDebuggerFacade& facade) override;

    resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject* query,
                                       AbstractObjectBuilder& builder) const override;
    resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder) override;
    resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder) override;

    void onInitialization(unsigned int requestId) override;
    void onTermination(unsigned int requestId) override;
    void onSuspension(unsigned int requestId, unsigned int entity) override;
    void onDisconnection(unsigned int requestId) override;
    void onRegistration(unsigned int requestId, unsigned int entity) override;
    void onUnregistration(unsigned int requestId, unsigned int entity) override;
    void onBreakpoint(unsigned int requestId, unsigned int entity, const Uri& location) override;

private:
    void queue(EventType type, unsigned int requestId, unsigned int entity, const Uri* location);
    resources::Status retrieveEventIdentifiers(AbstractObjectBuilder& builder) const;
    resources::Status retrieveEvent(const PathSegment& segment, AbstractObjectBuilder& builder) const;
    resources::Status deleteEvent(const PathSegment& segment);
    // False, with nothing subscribed, when `type` names no kind of event.
    [[nodiscard]] bool subscribe(const char* type, const DynamicObject& query, unsigned int& handle);
    unsigned int subscribeBreakpoint(const DynamicObject& query);

    InspectionFramework& framework;
    // Null until the framework registers the engine.
    EngineDebuggerFacade* facade;
    unsigned int nextEventIdentifier;
    Deque<Event> events;
    // Guards the identifier and the queue, for no longer than one queue operation or reply.
    mutable Mutex queueLock;
};

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
