#pragma once
// InspectionFramework: the way into a running simulation from outside. Engines serve parts of a tree of
// JSON resources under short paths; requests are routed to the engine whose path they begin with, by
// calls or over HTTP. There is one per Facilities.
//   InspectionFramework& inspector = tov::utils::Facilities::instance().getInspectionFramework();
//   inspector.registerEngine(myEngine); inspector.enableEngine("world");
//   inspector.startHttp(HttpSettings());   // GET /api/world/... on 127.0.0.1:getHttpPort() reaches myEngine
//   unsigned int handle = inspector.subscribe<BreakpointRequest>(myListener);   // events to myListener

#include <tov/utils/Export.h>
#include <tov/utils/ScopedPtr.h>
#include <tov/utils/debugger/ResourceStatus.h>

namespace tov {
namespace utils {

class AbstractObjectBuilder;
class DynamicObject;
class Facilities;

namespace debugger {

class AbstractEngine;
class AbstractEventFilter;
class AbstractEventListener;
class DebuggerFramework;
struct HttpSettings;
class RequestRegistry;
struct InspectionFrameworkData;

class TOV_UTILS_API InspectionFramework {
public:
    // Reads the logger and the string table from `facilities`, never through Facilities::instance.
    explicit InspectionFramework(Facilities& facilities);
    ~InspectionFramework();
    InspectionFramework(const InspectionFramework&) = delete;
    InspectionFramework& operator=(const InspectionFramework&) = delete;

    Facilities& getFacilities();
    const Facilities& getFacilities() const;
    const char* getName() const;
    void setName(const char* name);
    // The engine at "debug": entities, their contexts, and the commands that stop and step them.
    DebuggerFramework& getDebugger();
    const DebuggerFramework& getDebugger() const;

    // The engine is not owned: it must stay alive until unregistered. False, with an error to the
    // facilities' logger, when its path cannot be hashed or another engine has that path.
    [[nodiscard]] bool registerEngine(AbstractEngine& engine);
    // Disables the engine, then forgets it. An unknown path is a warning.
    void unregisterEngine(const char* path);
    void enableEngine(const char* path);
    void disableEngine(const char* path);
    // An unknown path is reported disabled.
    bool isEngineEnabled(const char* path) const;
    void enableAllEngines();
    void disableAllEngines();
    // Every registered engine as [{"path": "debug", "enabled": true}, ...], in the order of the paths;
    // false when the builder refused a value. The configured server answers it at GET /api/engines.
    bool describeEngines(AbstractObjectBuilder& builder) const;

    // Serves the engines over HTTP on every interface of the machine. A host that keeps the inspector
    // to itself prefers the form with an address.
    [[nodiscard]] bool startHttp(unsigned int port);
    // Listens on one IPv4 address only, "127.0.0.1" for loopback; an address the server cannot listen
    // on fails the start. Answers as the form above does.
    [[nodiscard]] bool startHttp(const char* address, unsigned int port);
    // The configured form, for a server left running beside a browser: loopback and a free port by
    // default, several connection threads, pages of other sites and foreign host names refused, an
    // optional token, and every refusal answered with {"error": "..."}. See HttpSettings.
    [[nodiscard]] bool startHttp(const HttpSettings& settings);
    // Waits until the request in progress is answered; must not be called from inside an engine.
    void shutdownHttp();
    bool isHttpStarted() const;
    // The port of the last start, failed ones included; 8000 before any. After a start on port 0 with
    // an address or settings, the port that the system chose.
    unsigned int getHttpPort() const;

    // Routes to the first engine whose path the request path begins with, giving it the rest of the
    // path; NotFound when there is none.
    resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject* query,
                                       AbstractObjectBuilder& builder);
    resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder);
    resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                     AbstractObjectBuilder& builder);

    // Subscribes `listener` to the events of `Request` (one of the seven request classes), through the
    // given filters, which the subscription owns from here on. Returns the handle, never 0 for a request
    // class once the library is initialized. The framework itself listens to every subscription too.
    template <typename Request>
    [[nodiscard]] unsigned int subscribe(AbstractEventListener& listener, AbstractEventFilter* const* filters = nullptr,
                                         unsigned int filterCount = 0);
    // False for a handle that is not subscribed.
    bool unsubscribe(unsigned int handle);
    // Ends every subscription, also those made by others.
    void unsubscribeAll();

private:
    RequestRegistry& getRegistry();
    // Every subscription is also told to the framework itself, through this listener.
    AbstractEventListener& getDebuggerListener();

    // Null when the path matches no engine; otherwise `hash` is the key of its entry.
    AbstractEngine* findEngine(const char* path, unsigned long long& hash) const;

    ScopedPtr<InspectionFrameworkData> data;
};

} // namespace debugger
} // namespace utils
} // namespace tov

#include <tov/utils/debugger/InspectionFramework.inl>
