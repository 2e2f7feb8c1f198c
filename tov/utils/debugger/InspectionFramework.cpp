#include <tov/utils/debugger/InspectionFramework.h>

#include <tov/utils/Facilities.h>
#include <tov/utils/Logging.h>
#include <tov/utils/String.h>
#include <tov/utils/StringTable.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/ExecutionController.h>
#include <tov/utils/debugger/impl/HTTPServer.h>
#include <tov/utils/debugger/impl/InspectionFrameworkImpl.h>

#include <cstring>

namespace tov {
namespace utils {
namespace debugger {

// Members are built in this order and destroyed in the reverse one: the server stops before the engine
// table goes, and the gate outlives the state that opens it.
struct InspectionFrameworkData {
    InspectionFrameworkData(Facilities& facilities, InspectionFramework& framework)
        : name("default"), implementation(facilities, controller), server(framework)
    {
    }

    String name;
    ExecutionController controller;
    impl::InspectionFrameworkImpl implementation;
    impl::HTTPServer server;
};

namespace {

// The key under which the facilities' string table keeps `path`, computed without storing the text:
// paths to look up come from outside (POST on "engines"), and interning each of them would grow the
// shared table without bound and, on a crafted collision, mark the facilities' logger with an error.
unsigned long long computePathHash(const Facilities& facilities, const char* path)
{
    return StringTable::computeHash(path, static_cast<unsigned int>(std::strlen(path)),
                                    facilities.getStringTable().getSeed());
}

} // namespace

InspectionFramework::InspectionFramework(Facilities& facilities)
    : data(TOV_NEW InspectionFrameworkData(facilities, *this))
{
}

InspectionFramework::~InspectionFramework() = default;

Facilities& InspectionFramework::getFacilities()
{
    return data->implementation.getFacilities();
}

const Facilities& InspectionFramework::getFacilities() const
{
    return data->implementation.getFacilities();
}

const char* InspectionFramework::getName() const
{
    return data->name.c_str();
}

void InspectionFramework::setName(const char* name)
{
    data->name = name != nullptr ? name : "";
}

DebuggerFramework& InspectionFramework::getDebugger()
{
    return data->implementation.getDebugger();
}

const DebuggerFramework& InspectionFramework::getDebugger() const
{
    return data->implementation.getDebugger();
}

bool InspectionFramework::registerEngine(AbstractEngine& engine)
{
    const char* path = engine.getPath();
    TOV_ASSERT(path != nullptr, "The given engine returns a NULL path.");
    if (path == nullptr) {
        return false;
    }
    AbstractLogger* logger = &getFacilities().getLogger();
    const unsigned long long hash = getFacilities().getStringTable().add(path, logger);
    if (hash == 0) {
        TOV_LOG_ERROR(logger, error::invalidArgument, "Unable to hash the given engine's path: " << path << ".");
        return false;
    }
    if (data->implementation.hasEngine(hash)) {
        TOV_LOG_ERROR(logger, error::invalidArgument,
                      "An engine having the same path (" << path << ") was already registered.");
        return false;
    }
    data->implementation.registerEngine(hash, engine);
    return true;
}

// A null path breaks the contract; behind the assertion these return at once, since there is no text
// to look up.
AbstractEngine* InspectionFramework::findEngine(const char* path, unsigned long long& hash) const
{
    hash = computePathHash(getFacilities(), path);
    return data->implementation.findEngine(hash, path);
}

void InspectionFramework::unregisterEngine(const char* path)
{
    TOV_ASSERT(path != nullptr, "The given path is NULL.");
    if (path == nullptr) {
        return;
    }
    unsigned long long hash = 0;
    if (findEngine(path, hash) == nullptr) {
        TOV_LOG_WARNING(&data->implementation.getFacilities().getLogger(),
                        "No register engine having the path " << path << ", ignoring the unregistration.");
        return;
    }
    data->implementation.unregisterEngine(hash, path);
}

void InspectionFramework::enableEngine(const char* path)
{
    TOV_ASSERT(path != nullptr, "The given path is NULL.");
    if (path == nullptr) {
        return;
    }
    if (!data->implementation.enableEngine(computePathHash(getFacilities(), path), path)) {
        TOV_LOG_WARNING(&data->implementation.getFacilities().getLogger(),
                        "No register engine having the path " << path << ", ignoring the enabling.");
    }
}

void InspectionFramework::disableEngine(const char* path)
{
    TOV_ASSERT(path != nullptr, "The given path is NULL.");
    if (path == nullptr) {
        return;
    }
    if (!data->implementation.disableEngine(computePathHash(getFacilities(), path), path)) {
        TOV_LOG_WARNING(&data->implementation.getFacilities().getLogger(),
                        "No register engine having the path " << path << ", ignoring the disabling.");
    }
}

bool InspectionFramework::isEngineEnabled(const char* path) const
{
    TOV_ASSERT(path != nullptr, "The given path is NULL.");
    if (path == nullptr) {
        return false;
    }
    bool enabled = false;
    if (!data->implementation.isEngineEnabled(computePathHash(getFacilities(), path), path, enabled)) {
        TOV_LOG_WARNING(&data->implementation.getFacilities().getLogger(),
                        "No register engine having the path " << path << ", considering it disabled.");
        return false;
    }
    return enabled;
}

void InspectionFramework::enableAllEngines()
{
    data->implementation.enableAllEngines();
}

void InspectionFramework::disableAllEngines()
{
    data->implementation.disableAllEngines();
}

bool InspectionFramework::describeEngines(AbstractObjectBuilder& builder) const
{
    return data->implementation.describeEngines(builder);
}

bool InspectionFramework::startHttp(unsigned int port)
{
    return data->server.start(port);
}

bool InspectionFramework::startHttp(const char* address, unsigned int port)
{
    return data->server.start(address, port);
}

bool InspectionFramework::startHttp(const HttpSettings& settings)
{
    return data->server.start(settings);
}

void InspectionFramework::shutdownHttp()
{
    data->server.stop();
}

bool InspectionFramework::isHttpStarted() const
{
    return data->server.isStarted();
}

unsigned int InspectionFramework::getHttpPort() const
{
    return data->server.getPort();
}

resources::Status InspectionFramework::retrieveResource(const char* path, unsigned int length,
                                                        const DynamicObject* query, AbstractObjectBuilder& builder)
{
    return data->implementation.retrieveResource(path, length, query, builder);
}

resources::Status InspectionFramework::createResource(const char* path, unsigned int length, const DynamicObject* query,
                                                      AbstractObjectBuilder& builder)
{
    return data->implementation.createResource(path, length, query, builder);
}

resources::Status InspectionFramework::deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                                      AbstractObjectBuilder& builder)
{
    return data->implementation.deleteResource(path, length, query, builder);
}

bool InspectionFramework::unsubscribe(unsigned int handle)
{
    return getRegistry().unsubscribe(handle);
}

void InspectionFramework::unsubscribeAll()
{
    getRegistry().unsubscribeAll();
}

RequestRegistry& InspectionFramework::getRegistry()
{
    return data->implementation.getRegistry();
}

AbstractEventListener& InspectionFramework::getDebuggerListener()
{
    return data->implementation;
}

} // namespace debugger
} // namespace utils
} // namespace tov
