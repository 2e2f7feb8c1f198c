// Feeds arbitrary requests to the inspection server's request handler, without sockets: the input is
// split at its first three line ends into method, path, query and body; a method that begins with '+'
// is answered in the configured form, which must answer once and explain every refusal in JSON. The
// assertion function stays
// the default, so an assertion that a client could reach ends the run as a crash. Every answer must be
// well formed: heads whose Content-Length gives exactly the body that follows.

#include <tov/utils/AbstractLogger.h>
#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/Memory.h>
#include <tov/utils/System.h>
#include <tov/utils/debugger/AbstractContextFactory.h>
#include <tov/utils/debugger/AbstractEngine.h>
#include <tov/utils/debugger/EngineDebuggerFacade.h>
#include <tov/utils/debugger/InspectionFramework.h>
#include <tov/utils/debugger/impl/EventFramework.h>
#include <tov/utils/debugger/impl/HTTPConnection.h>
#include <tov/utils/debugger/impl/HTTPServer.h>
#include <tov/utils/debugger/impl/MainContextFactory.h>

#include "support/MemoryConnection.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using tov::testing::MemoryConnection;
using tov::utils::AbstractObjectBuilder;
using tov::utils::DynamicObject;
namespace debugger = tov::utils::debugger;

// Answers with what it was given, fails after writing half an answer, or knows nothing.
class EchoEngine : public debugger::AbstractEngine {
public:
    EchoEngine(const char* path, debugger::resources::Status status) : AbstractEngine(path, true), status(status) {}

    debugger::resources::Status retrieveResource(const char* path, unsigned int length, const DynamicObject*,
                                                 AbstractObjectBuilder& builder) const override
    {
        builder.begin();
        builder.beginObject();
        builder.objectChild("rest");
        builder.string(path, length);
        if (status == debugger::resources::Ok) {
            builder.endObject();
            builder.end();
        }
        return status;
    }
    debugger::resources::Status createResource(const char* path, unsigned int length, const DynamicObject* query,
                                               AbstractObjectBuilder& builder) override
    {
        return retrieveResource(path, length, query, builder);
    }
    debugger::resources::Status deleteResource(const char* path, unsigned int length, const DynamicObject* query,
                                               AbstractObjectBuilder& builder) override
    {
        return retrieveResource(path, length, query, builder);
    }

private:
    debugger::resources::Status status;
};

// Every level on, so that every message is composed; nothing is kept.
class DiscardingLogger : public tov::utils::AbstractLogger {
public:
    DiscardingLogger() : AbstractLogger(true, true, true) {}

protected:
    void doLogError(const tov::utils::ErrorType&, const char*, unsigned int, const char*) override {}
};

std::string takeLine(const std::uint8_t*& data, std::size_t& size)
{
    const std::uint8_t* end = static_cast<const std::uint8_t*>(std::memchr(data, '\n', size));
    const std::size_t length = end != nullptr ? static_cast<std::size_t>(end - data) : size;
    std::string line(reinterpret_cast<const char*>(data), length);
    const std::size_t consumed = std::min(size, length + 1);
    data += consumed;
    size -= consumed;
    return line;
}

// The number of replies.
unsigned int checkReplies(const std::string& written, bool explained)
{
    unsigned int count = 0;
    std::size_t position = 0;
    if (written.empty()) {
        std::abort(); // every request gets an answer
    }
    while (position < written.size()) {
        if (written.compare(position, 9, "HTTP/1.1 ") != 0) {
            std::abort();
        }
        const std::size_t headEnd = written.find("\r\n\r\n", position);
        if (headEnd == std::string::npos) {
            std::abort();
        }
        const std::string head = written.substr(position, headEnd - position);
        const std::size_t lengthAt = head.find("Content-Length: ");
        if (lengthAt == std::string::npos) {
            std::abort();
        }
        const std::size_t bodySize = std::strtoul(head.c_str() + lengthAt + 16, nullptr, 10);
        const bool refusal = written.compare(position + 9, 1, "4") == 0 || written.compare(position + 9, 1, "5") == 0;
        if (explained && refusal && written.compare(headEnd + 4, 10, "{\"error\":\"") != 0) {
            std::abort();
        }
        position = headEnd + 4 + bodySize;
        if (position > written.size()) {
            std::abort();
        }
        ++count;
    }
    return count;
}

// Registers three entities, the second one with a frame above its bottom one, for the debugger's tree.
class Simulation : public debugger::AbstractEngine {
public:
    Simulation() : AbstractEngine("simulation", true) {}
    void setDebuggerFacade(debugger::EngineDebuggerFacade& given) override
    {
        AbstractEngine::setDebuggerFacade(given);
        const unsigned int entities[] = {0, 1, 2};
        onEntitiesRegistration(entities, 3);
        debugger::MainContextFactory frames;
        given.pushContext(*this, 1, frames);
    }
};

// The events engine is registered by hand: the server, which would bring it, does not run here.
struct Host {
    Host()
        : world("world", debugger::resources::Ok), broken("broken", debugger::resources::Error),
          nested("events/sub", debugger::resources::NotFound)
    {
        // A host that is not set up whole would answer every input with NotFound: that ends the run.
        if (!tov::utils::initialize(nullptr)) {
            std::abort();
        }
        tov::utils::Facilities::instance().setLogger(logger);
        debugger::InspectionFramework& framework = tov::utils::Facilities::instance().getInspectionFramework();
        debugger::AbstractEngine* const engines[] = {&world, &broken, &nested, &simulation};
        for (debugger::AbstractEngine* engine : engines) {
            if (!framework.registerEngine(*engine)) {
                std::abort();
            }
        }
        events = TOV_NEW debugger::impl::EventFramework(framework);
        if (!framework.registerEngine(*events)) {
            std::abort();
        }
    }

    DiscardingLogger logger;
    EchoEngine world;
    EchoEngine broken;
    EchoEngine nested;
    Simulation simulation;
    // Never destroyed: the host lives as long as the fuzzing process.
    debugger::impl::EventFramework* events;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Host host;
    std::string method = takeLine(data, size);
    const bool configured = !method.empty() && method[0] == '+';
    if (configured) {
        method.erase(0, 1);
    }
    std::string path = takeLine(data, size);
    std::string query = takeLine(data, size);
    MemoryConnection connection(method, path, query, std::string(reinterpret_cast<const char*>(data), size));
    debugger::InspectionFramework& framework = tov::utils::Facilities::instance().getInspectionFramework();
    if (configured) {
        // OPTIONS is answered before the handler in that form.
        const debugger::impl::HTTPServer::RequestForm form = {true, "Vary: Origin\r\n", 256 * 1024};
        debugger::impl::HTTPServer::handleRequest(framework, connection, form);
        // The server reads the method as a C string, so "OPTIONS" followed by a NUL is OPTIONS to it.
        const bool preflight = std::strcmp(method.c_str(), "OPTIONS") == 0;
        if (checkReplies(connection.written, true) != 1 && !preflight) {
            std::abort();
        }
    } else {
        debugger::impl::HTTPServer::handleRequest(framework, connection);
        checkReplies(connection.written, false);
    }
    host.logger.resetErrors();
    return 0;
}
