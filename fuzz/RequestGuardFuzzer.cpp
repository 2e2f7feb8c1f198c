// The configured server's header checks on any bytes: Host, Origin, Authorization and a listening
// address, taken from the input's lines. Nothing may be admitted that is neither the server's own
// origin nor a listed one, no token but the right one may pass, and no address may be accepted that
// could make the server listen on more than one place.
#include <tov/utils/debugger/HttpSettings.h>
#include <tov/utils/debugger/impl/ListeningAddress.h>
#include <tov/utils/debugger/impl/RequestGuard.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <strings.h>
#include <vector>

using namespace tov::utils;
using namespace tov::utils::debugger;

namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "broken: %s\n", what);
        std::abort();
    }
}

// Null stands for a header that was not sent: the line "-".
const char* headerOf(const std::string& line)
{
    return line == "-" ? nullptr : line.c_str();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    std::vector<std::string> lines(1);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += static_cast<char>(data[i]);
        }
    }
    lines.resize(4, "-");
    HttpSettings settings;
    settings.allowedOrigins.push_back("http://localhost:5173");
    settings.allowedHosts.push_back("sim.test");
    settings.accessToken = "token";
    const impl::RequestGuard guard(settings, "127.0.0.1");
    const char* host = headerOf(lines[0]);
    const char* origin = headerOf(lines[1]);

    const impl::RequestGuard::Verdict admission = guard.admit(host, origin);
    if (admission.code == 0 && origin != nullptr) {
        const bool own = host != nullptr && strcasecmp(origin, ("http://" + std::string(host)).c_str()) == 0;
        require(own || strcasecmp(origin, "http://localhost:5173") == 0, "a foreign origin was admitted");
    }
    if (admission.code == 0 && host != nullptr) {
        const String name = impl::RequestGuard::extractHostName(host);
        require(name == "localhost" || name == "127.0.0.1" || name == "[::1]" || name == "sim.test",
                "a foreign host was admitted");
    }
    const char* authorization = headerOf(lines[2]);
    if (guard.authorize(authorization).code == 0) {
        require(authorization != nullptr && strcasecmp(authorization, "bearer token") == 0 &&
                    std::string(authorization).substr(7) == "token",
                "a wrong token passed");
    }
    guard.getCorsHeaders(origin);

    impl::ListeningAddress address;
    if (address.parse(lines[3].c_str(), static_cast<unsigned int>(size))) {
        const String& ports = address.getListeningPorts();
        require(ports.find(',') == String::npos && ports.find(' ') == String::npos, "a list of addresses was accepted");
        require(size <= 65535, "a port above 65535 was accepted");
    }
    return 0;
}
