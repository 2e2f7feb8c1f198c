#pragma once
// The command line of tov-demo, read by CLI11: every option with its default and its range in --help.
//   Options options;  std::string error;
//   int status = parseOptions(argc, argv, options, std::cout, std::cerr);   // -1: go on; else exit with it

#include <ostream>
#include <string>

namespace demo {

struct Options {
    std::string bind = "127.0.0.1";
    // 0 asks for any free port; the one taken is printed.
    unsigned int port = 8000;
    // 0 runs until Ctrl-C.
    unsigned int seconds = 0;
    unsigned int agents = 8;
    bool agentsGiven = false;
    unsigned int workers = 2;
    unsigned int seed = 0xFFFF000;
    bool seedGiven = false;
    unsigned int tickMilliseconds = 50;
    bool tickGiven = false;
    std::string load;
    std::string save = "tov-demo-world";
    bool saveGiven = false;
    bool tour = false;
};

// -1 when the program goes on; otherwise the exit status, once --help or --version was printed to `out`
// or a refusal with its reason to `err`.
int parseOptions(int argc, const char* const* argv, Options& options, std::ostream& out, std::ostream& err);

} // namespace demo
