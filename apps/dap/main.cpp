// tov-dap: the Debug Adapter Protocol over standard input and output (or a listening port), in front
// of a simulation host's inspector, so that any editor that speaks the protocol debugs the host.

#include "apps/dap/Server.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <exception>
#include <iostream>

namespace {

int run(int argc, char** argv)
{
    CLI::App app("tov-dap: debug a simulation host's entities from an editor, through the Debug Adapter Protocol.\n"
                 "Messages come on standard input and go to standard output; messages about the adapter go to "
                 "standard error.");
    unsigned int port = 0;
    CLI::Option* listening = app.add_option("--listen", port,
                                            "serve editors that connect to 127.0.0.1:PORT instead "
                                            "(0 takes a free port, printed on standard error)")
                                 ->type_name("PORT")
                                 ->check(CLI::Range(0u, 65535u));
    app.set_version_flag("--version", std::string("tov-dap ") + TOV_VERSION_TEXT);
    CLI11_PARSE(app, argc, argv);
    // An editor that closes its end must not end the adapter by a signal: writes then fail, and are seen.
    std::signal(SIGPIPE, SIG_IGN);
    // An editor that ends the adapter instead of disconnecting still gets the host left as disconnect
    // leaves it. No SA_RESTART, so that a wait for a connection ends too.
    struct sigaction ending {};
    ending.sa_handler = [](int) { tov::dap::Server::stopping = 1; };
    sigemptyset(&ending.sa_mask);
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaction(signal, &ending, nullptr);
    }
    tov::dap::Server server(std::cerr);
    return listening->count() != 0 ? server.listen(port) : server.serveStandardStreams();
}

} // namespace

// Nothing is meant to throw this far; should something (a failed allocation, say), the editor's
// user reads why on standard error instead of a bare abort.
int main(int argc, char** argv)
{
    try {
        return run(argc, argv);
    } catch (const std::exception& failure) {
        std::cerr << "tov-dap: " << failure.what() << std::endl;
        return 1;
    }
}
