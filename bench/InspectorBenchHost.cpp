// A host for measuring the inspector with an HTTP load generator (bench/inspector.sh). It serves one
// small engine, "clock", on 127.0.0.1 until its standard input closes:
//   bench_inspector_host inspector 8000     the library's inspector
//   bench_inspector_host bare 8000          a bare CivetWeb handler with the same options, writing the
//                                           bytes that the inspector answers to GET /api/clock

#include <tov/utils/AbstractLogger.h>
#include <tov/utils/AbstractObjectBuilder.h>
#include <tov/utils/Facilities.h>
#include <tov/utils/System.h>
#include <tov/utils/debugger/All.h>

#include <civetweb.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

namespace {

namespace debugger = tov::utils::debugger;

class ClockEngine : public debugger::AbstractEngine {
public:
    ClockEngine() : AbstractEngine("clock", true) {}

    debugger::resources::Status retrieveResource(const char*, unsigned int, const tov::utils::DynamicObject*,
                                                 tov::utils::AbstractObjectBuilder& builder) const override
    {
        builder.begin();
        builder.beginObject();
        builder.objectChild("tick");
        builder.integer(42);
        builder.objectChild("running");
        builder.boolean(true);
        builder.endObject();
        builder.end();
        return debugger::resources::Ok;
    }
};

// What a host would install to keep its console quiet: errors only.
class QuietLogger : public tov::utils::AbstractLogger {
public:
    QuietLogger() : AbstractLogger(false, false, false) {}

protected:
    void doLogError(const tov::utils::ErrorType&, const char*, unsigned int, const char* message) override
    {
        std::fprintf(stderr, "error: %s\n", message);
    }
};

const char body[] = "{\"tick\":42,\"running\":true}";

std::string bareReply()
{
    return "HTTP/1.1 200 OK\r\nContent-Type: application/json; charset=utf-8\r\nContent-Length: " +
           std::to_string(sizeof(body) - 1) + "\r\nConnection: close\r\nAccess-Control-Allow-Origin: *\r\n\r\n" + body;
}

int answerBare(mg_connection* connection)
{
    static const std::string reply = bareReply();
    mg_write(connection, reply.data(), reply.size());
    return 1;
}

int runBare(const std::string& port)
{
    mg_callbacks callbacks;
    std::memset(&callbacks, 0, sizeof(callbacks));
    callbacks.begin_request = &answerBare;
    const std::string listening = "127.0.0.1:" + port;
    const char* options[] = {
        "enable_directory_listing", "false", "listening_ports", listening.c_str(), "num_threads", "1", nullptr};
    mg_context* context = mg_start(&callbacks, nullptr, options);
    if (context == nullptr) {
        std::cerr << "cannot listen on " << listening << "\n";
        return 1;
    }
    std::cout << "ready" << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
    }
    mg_stop(context);
    return 0;
}

int runInspector(unsigned int port)
{
    if (!tov::utils::initialize(nullptr)) {
        return 1;
    }
    QuietLogger logger;
    tov::utils::Facilities::instance().setLogger(logger);
    ClockEngine clock;
    debugger::InspectionFramework& inspector = tov::utils::Facilities::instance().getInspectionFramework();
    int status = 1;
    if (inspector.registerEngine(clock) && inspector.startHttp("127.0.0.1", port)) {
        std::cout << "ready" << std::endl;
        std::string line;
        while (std::getline(std::cin, line)) {
        }
        inspector.shutdownHttp();
        status = 0;
    }
    inspector.unregisterEngine("clock");
    tov::utils::Facilities::instance().clearLogger();
    tov::utils::terminate(nullptr);
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 || (std::strcmp(argv[1], "inspector") != 0 && std::strcmp(argv[1], "bare") != 0)) {
        std::cerr << "usage: bench_inspector_host inspector|bare <port>\n";
        return 2;
    }
    if (std::strcmp(argv[1], "bare") == 0) {
        return runBare(argv[2]);
    }
    return runInspector(static_cast<unsigned int>(std::stoul(argv[2])));
}
