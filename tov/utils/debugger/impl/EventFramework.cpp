#include <tov/utils/debugger/impl/EventFramework.h>

#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/DynamicObject.h>
#include <tov/utils/DynamicObjectIterator.h>
#include <tov/utils/Memory.h>
#include <tov/utils/ScopedMutex.h>
#include <tov/utils/debugger/BreakpointRequest.h>
#include <tov/utils/debugger/EngineDebuggerFacade.h>
#include <tov/utils/debugger/EntityRegistrationRequest.h>
#include <tov/utils/debugger/EntityUnregistrationRequest.h>
#include <tov/utils/debugger/InitializationRequest.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/TargetDisconnectRequest.h>
#include <tov/utils/debugger/TargetSuspendRequest.h>
#include <tov/utils/debugger/TerminationRequest.h>
#include <tov/utils/debugger/impl/EntitiesFilterFactory.h>
#include <tov/utils/debugger/impl/HitCountFilterFactory.h>
#include <tov/utils/debugger/impl/LocationFilterFactory.h>
#include <tov/utils/debugger/impl/LocationText.h>
#include <tov/utils/debugger/impl/PathSegment.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {
namespace impl {

namespace {

// By event type code.
const char* const eventTypeNames[] = {"initialization", "termination",    "disconnection", "suspension",
                                      "registration",   "unregistration", "breakpoint"};

const char* const filterNames[] = {"location", "entities", "hitcount"};

bool isSubscriptions(const PathSegment& segment)
{
    return segment.selects("subscriptions");
}

bool writeEvent(const EventFramework::Event& event, AbstractObjectBuilder& builder)
{
    if (!builder.begin() || !builder.beginObject() || !builder.objectChild("id") ||
        !builder.integer(event.identifier) || !builder.objectChild("type") ||
        !builder.string(eventTypeNames[event.type]) || !builder.objectChild("requestId") ||
        !builder.integer(event.requestId)) {
        return false;
    }
    if (event.type >= EventFramework::suspension &&
        (!builder.objectChild("entity") || !builder.integer(event.entity))) {
        return false;
    }
    if (event.type >= EventFramework::breakpoint) {
        const LocationText location(event.location);
        if (!builder.objectChild("location") || !builder.string(location.get(), location.getLength())) {
            return false;
        }
    }
    return builder.endObject() && builder.end();
}

} // namespace

EventFramework::EventFramework(InspectionFramework& framework)
    : AbstractEngine("events", false), framework(framework), facade(nullptr), nextEventIdentifier(0),
      queueLock(Mutex::Normal)
{
}

EventFramework::~EventFramework()
{
    framework.unsubscribeAll();
}

void EventFramework::setDebuggerFacade(EngineDebuggerFacade& facade)
{
    AbstractEngine::setDebuggerFacade(facade);
    this->facade = &facade;
    EngineDebuggerFacade::FilterCreators& creators = facade.getEventRequestFilterCreator();
    AbstractLogger* logger = &facade.getLogger();
    // The names are freed first, so that neither step can fail; a failure would still reach `logger`.
    for (const char* name : filterNames) {
        if (creators.isRegistered(name)) {
            static_cast<void>(creators.unregisterCreator(name, logger));
        }
    }
    static_cast<void>(creators.registerCreator<LocationFilterFactory>(filterNames[0], logger));
    static_cast<void>(creators.registerCreator<EntitiesFilterFactory>(filterNames[1], logger));
    static_cast<void>(creators.registerCreator<HitCountFilterFactory>(filterNames[2], logger));
}

resources::Status EventFramework::retrieveResource(const char* path, unsigned int length, const DynamicObject*,
                                                   AbstractObjectBuilder& builder) const
{
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    if (segment.length == 0) {
        return retrieveEventIdentifiers(builder);
    }
    if (isSubscriptions(segment)) {
        return resources::NotFound;
    }
    return retrieveEvent(segment, builder);
}

// QUIRK(events-any-segment-subscribes): any path of one segment subscribes. The remainder behind the segment's first character is compared
// with "subscriptions" over the length of the path less the segment and one; a path with nothing behind
// the segment would have that count reach below zero and the comparison read behind the path, so it is
// no match instead.
resources::Status EventFramework::createResource(const char* path, unsigned int length, const DynamicObject* query,
                                                 AbstractObjectBuilder& builder)
{
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::Error;
    }
    if (length < segment.length + 1) {
        return resources::NotFound;
    }
    const unsigned int compared = length - segment.length - 1;
    if (compared != 0 &&
        (segment.start + 1 + compared > length || std::strncmp("subscriptions", segment.text + 1, compared) != 0)) {
        return resources::NotFound;
    }
    if (query == nullptr) {
        return resources::Error;
    }
    // A null property counts as compatible with a string but reading it asserts: it is the null string,
    // refused before the read, since the body comes from a client.
    const unsigned int type = query->getProperty("type");
    const char* typeName =
        type != 0 && query->getType(type) != type::null && query->isTypeCompatible(type, type::string)
            ? query->getString(type)
            : nullptr;
    if (typeName == nullptr) {
        return resources::Error;
    }
    unsigned int handle = 0;
    if (!subscribe(typeName, *query, handle)) {
        return resources::Error;
    }
    const bool written = builder.begin() && builder.beginObject() && builder.objectChild("requestId") &&
                         builder.integer(handle) && builder.endObject() && builder.end();
    return written ? resources::Ok : resources::Error;
}

resources::Status EventFramework::deleteResource(const char* path, unsigned int length, const DynamicObject*,
                                                 AbstractObjectBuilder& builder)
{
    PathSegment segment;
    if (!segment.take(path, length)) {
        return resources::NotFound;
    }
    resources::Status status = resources::Ok;
    // QUIRK(events-queue-until-deleted): events are dropped only here, by a client; a host that nobody
    // reads keeps them, so that a client that comes back late misses nothing.
    if (segment.length == 0) {
        ScopedMutex guard(queueLock);
        events.clear();
    } else if (!isSubscriptions(segment)) {
        status = deleteEvent(segment);
    } else {
        PathSegment handle;
        if (!handle.take(path + segment.rest, length - segment.rest)) {
            return resources::NotFound;
        }
        if (handle.length == 0) {
            framework.unsubscribeAll();
        } else if (!framework.unsubscribe(static_cast<unsigned int>(handle.readLeadingNumber()))) {
            return resources::NotFound;
        }
    }
    if (status != resources::Ok) {
        return status;
    }
    return builder.begin() && builder.null() && builder.end() ? resources::Ok : resources::Error;
}

void EventFramework::onInitialization(unsigned int requestId)
{
    queue(initialization, requestId, 0, nullptr);
}

void EventFramework::onTermination(unsigned int requestId)
{
    queue(termination, requestId, 0, nullptr);
}

void EventFramework::onSuspension(unsigned int requestId, unsigned int entity)
{
    queue(suspension, requestId, entity, nullptr);
}

void EventFramework::onDisconnection(unsigned int requestId)
{
    queue(disconnection, requestId, 0, nullptr);
}

void EventFramework::onRegistration(unsigned int requestId, unsigned int entity)
{
    queue(registration, requestId, entity, nullptr);
}

void EventFramework::onUnregistration(unsigned int requestId, unsigned int entity)
{
    queue(unregistration, requestId, entity, nullptr);
}

void EventFramework::onBreakpoint(unsigned int requestId, unsigned int entity, const Uri& location)
{
    queue(breakpoint, requestId, entity, &location);
}

void EventFramework::queue(EventType type, unsigned int requestId, unsigned int entity, const Uri* location)
{
    ScopedMutex guard(queueLock);
    events.push_back(Event{nextEventIdentifier, type, requestId, entity, location != nullptr ? *location : Uri()});
    ++nextEventIdentifier;
}

resources::Status EventFramework::retrieveEventIdentifiers(AbstractObjectBuilder& builder) const
{
    ScopedMutex guard(queueLock);
    if (!builder.begin() || !builder.beginArray()) {
        return resources::Error;
    }
    for (const Event& event : events) {
        if (!builder.arrayChild() || !builder.integer(event.identifier)) {
            return resources::Error;
        }
    }
    return builder.endArray() && builder.end() ? resources::Ok : resources::Error;
}

// Text that is no number reads as event 0.
resources::Status EventFramework::retrieveEvent(const PathSegment& segment, AbstractObjectBuilder& builder) const
{
    const unsigned long identifier = segment.readLeadingNumber();
    ScopedMutex guard(queueLock);
    for (const Event& event : events) {
        if (event.identifier == identifier) {
            return writeEvent(event, builder) ? resources::Ok : resources::Error;
        }
    }
    return resources::NotFound;
}

resources::Status EventFramework::deleteEvent(const PathSegment& segment)
{
    const unsigned long identifier = segment.readLeadingNumber();
    ScopedMutex guard(queueLock);
    for (Deque<Event>::iterator event = events.begin(); event != events.end(); ++event) {
        if (event->identifier == identifier) {
            events.erase(event);
            return resources::Ok;
        }
    }
    return resources::NotFound;
}

bool EventFramework::subscribe(const char* type, const DynamicObject& query, unsigned int& handle)
{
    if (std::strcmp(type, "breakpoint") == 0) {
        handle = subscribeBreakpoint(query);
    } else if (std::strcmp(type, "initialization") == 0) {
        handle = framework.subscribe<InitializationRequest>(*this);
    } else if (std::strcmp(type, "disconnection") == 0) {
        handle = framework.subscribe<TargetDisconnectRequest>(*this);
    } else if (std::strcmp(type, "suspension") == 0) {
        handle = framework.subscribe<TargetSuspendRequest>(*this);
    } else if (std::strcmp(type, "termination") == 0) {
        handle = framework.subscribe<TerminationRequest>(*this);
    } else if (std::strcmp(type, "registration") == 0) {
        handle = framework.subscribe<EntityRegistrationRequest>(*this);
    } else if (std::strcmp(type, "unregistration") == 0) {
        handle = framework.subscribe<EntityUnregistrationRequest>(*this);
    } else {
        return false;
    }
    return true;
}

// An unknown filter name meets the factory's default creator, which makes nothing: it is ignored.
unsigned int EventFramework::subscribeBreakpoint(const DynamicObject& query)
{
    Vector<AbstractEventFilter*> filters;
    const unsigned int filtersProperty = query.getProperty("filters");
    if (filtersProperty != 0 && query.getType(filtersProperty) == type::object && facade != nullptr) {
        EngineDebuggerFacade::FilterCreators& creators = facade->getEventRequestFilterCreator();
        DynamicObjectIterator filter(query, filtersProperty, 0);
        for (filter.next(); !filter.end(); filter.next()) {
            AbstractEventFilter* made =
                creators.getCreator(String(filter.getKey(), filter.getKeyLength()))(query, filter.getProperty());
            if (made != nullptr) {
                filters.push_back(made);
            }
        }
    }
    return framework.subscribe<BreakpointRequest>(*this, filters.data(), static_cast<unsigned int>(filters.size()));
}

} // namespace impl
} // namespace debugger
} // namespace utils
} // namespace tov
