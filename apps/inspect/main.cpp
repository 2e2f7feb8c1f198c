// tov-inspect: the command-line client of a simulation host's inspector. See tov-inspect --help.

#include "apps/inspect/Commands.h"

#include <csignal>
#include <cstdlib>
#include <iostream>

namespace {

void onInterrupt(int)
{
    tov::inspect::interrupt();
}

const char* readEnvironment(const char* name)
{
    return std::getenv(name);
}

} // namespace

int main(int argc, char** argv)
{
    // The first Ctrl-C ends a polling command at its next poll; the handler then falls back to the
    // default, so that a second one ends the program at once.
    struct sigaction action {};
    action.sa_handler = &onInterrupt;
    action.sa_flags = SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);

    return tov::inspect::run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr, &readEnvironment);
}
