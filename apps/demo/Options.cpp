#include "Options.h"

#include <CLI/CLI.hpp>

namespace demo {

int parseOptions(int argc, const char* const* argv, Options& options, std::ostream& out, std::ostream& err)
{
    CLI::App app("A small simulation host: foragers seek, move and eat on a few worker threads while the "
                 "inspector serves the world and the debugger over HTTP.",
                 "tov-demo");
    app.set_version_flag("--version", "tov-demo " TOV_VERSION_TEXT);
    app.option_defaults()->always_capture_default();
    app.footer("A world saved on exit (PREFIX.json, PREFIX.txt) can start the next run with --load; the world "
               "loaded decides the agents and the tick, and its seed unless --seed is given.\n");
    app.add_option("--port", options.port, "the inspector's port; 0 takes a free one")->check(CLI::Range(0u, 65535u));
    app.add_option("--bind", options.bind, "the address to listen on (an IPv4 address)");
    app.add_option("--seconds", options.seconds, "stop after this many seconds; 0 runs until Ctrl-C")
        ->check(CLI::Range(0u, 86400u * 365u));
    CLI::Option* agents =
        app.add_option("--agents", options.agents, "the number of foragers")->check(CLI::Range(1u, 10000u));
    app.add_option("--workers", options.workers, "the worker threads that run them")->check(CLI::Range(1u, 64u));
    CLI::Option* seed =
        app.add_option("--seed", options.seed, "the seed of the random streams")->check(CLI::Range(0u, 0xFFFFFFFFu));
    CLI::Option* tick = app.add_option("--tick-ms", options.tickMilliseconds, "milliseconds between rounds")
                            ->check(CLI::Range(0u, 60000u));
    app.add_option("--lifespan", options.lifespan,
                   "rounds an agent lives; then a newborn takes its place under the same id, unregistered "
                   "and registered again on the debugger; 0: agents live forever")
        ->check(CLI::Range(0u, 1000000u));
    app.add_option("--load", options.load, "start from a world saved as JSON or as saved text")
        ->check(CLI::ExistingFile);
    CLI::Option* save = app.add_option("--save", options.save,
                                       "the prefix of the files written on exit; \"\" writes none "
                                       "(with --tour, nothing is written unless --save is given)");
    app.add_flag("--tour", options.tour,
                 "drive the inspector with tov-inspect through a scripted session and "
                 "exit 0 when every step behaved");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        return 0;
    } catch (const CLI::CallForVersion& version) {
        out << version.what() << '\n';
        return 0;
    } catch (const CLI::ParseError& error) {
        err << "tov-demo: " << error.what() << "\n(tov-demo --help shows every option with its default)\n";
        return 2;
    }
    options.agentsGiven = agents->count() != 0;
    options.seedGiven = seed->count() != 0;
    options.tickGiven = tick->count() != 0;
    options.saveGiven = save->count() != 0;
    // A tour is a test run: it must not overwrite the world a user saved from a run of their own.
    if (options.tour && !options.saveGiven) {
        options.save.clear();
    }
    return -1;
}

} // namespace demo
