#pragma once
// The commands of tov-inspect, the command-line client of a host's inspector, kept apart from the
// program's entry point so that they can be run in-process (the demo's tour does).
//   std::ostringstream out, err;
//   int status = tov::inspect::run({"--port", "8001", "entities"}, out, err);   // exitSuccess: a table in out

#include <ostream>
#include <string>
#include <vector>

namespace tov {
namespace inspect {

enum ExitStatus : int {
    exitSuccess = 0,
    exitRefused = 1, // the host answered with an error status, refused, or sent what was not expected
    exitUsage = 2,
    exitUnreachable = 3, // no connection, or it broke during an exchange
};

// `arguments` without the program's name. Results go to `out`, diagnostics to `err`. `environment`
// reads a variable (TOV_INSPECT_URL, TOV_INSPECT_TOKEN); null reads none.
int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const char* (*environment)(const char*) = nullptr);

// Ends the commands that poll (events --follow, wait-suspended, step) before their next poll. Only
// stores to a lock-free atomic, so a signal handler may call it. Each run starts uninterrupted.
void interrupt();

} // namespace inspect
} // namespace tov
