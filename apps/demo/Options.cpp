#include "Options.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace demo {

namespace {

bool readNumber(const char* text, unsigned long maximum, unsigned int& out)
{
    if (text == nullptr || *text == '\0' || *text == '-') {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    const unsigned long value = std::strtoul(text, &end, 0);
    if (errno != 0 || *end != '\0' || value > maximum) {
        return false;
    }
    out = static_cast<unsigned int>(value);
    return true;
}

} // namespace

const char* usage()
{
    return "usage: tov-demo [--port N] [--bind ADDRESS] [--seconds N] [--agents N] [--workers N]\n"
           "                [--seed N] [--tick-ms N] [--load FILE] [--save PREFIX] [--tour]\n"
           "  --port 0 takes any free port; --seconds 0 (the default) runs until Ctrl-C;\n"
           "  --load starts from a world saved as JSON or as saved text; --save names the files written\n"
           "  on exit (PREFIX.json, PREFIX.txt; \"\" writes none); --tour drives the inspector through a\n"
           "  scripted session and exits 0 when every step behaved.\n";
}

bool parseOptions(int argc, const char* const* argv, Options& options, std::string& error)
{
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
        bool valid = true;
        if (name == "--tour") {
            options.tour = true;
            continue;
        }
        if (name == "--help" || name == "-h") {
            options.help = true;
            continue;
        }
        static const char* const withValue[] = {"--port", "--bind", "--seconds", "--agents", "--workers",
                                                "--seed", "--tick-ms", "--load", "--save"};
        bool known = false;
        for (const char* option : withValue) {
            known = known || name == option;
        }
        if (!known) {
            error = "unknown option " + name;
            return false;
        }
        if (value == nullptr) {
            error = "missing value after " + name;
            return false;
        }
        if (name == "--port") {
            valid = readNumber(value, 65535, options.port);
        } else if (name == "--bind") {
            options.bind = value;
        } else if (name == "--seconds") {
            valid = readNumber(value, 86400u * 365u, options.seconds);
        } else if (name == "--agents") {
            valid = readNumber(value, 10000, options.agents) && options.agents > 0;
        } else if (name == "--workers") {
            valid = readNumber(value, 64, options.workers) && options.workers > 0;
        } else if (name == "--seed") {
            valid = readNumber(value, 0xFFFFFFFFul, options.seed);
            options.seedGiven = true;
        } else if (name == "--tick-ms") {
            valid = readNumber(value, 60000, options.tickMilliseconds);
        } else if (name == "--load") {
            options.load = value;
        } else {
            options.save = value;
        }
        if (!valid) {
            error = "bad value for " + name + ": " + value;
            return false;
        }
        ++i;
    }
    return true;
}

} // namespace demo
