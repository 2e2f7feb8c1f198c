#pragma once
// The command line of tov-demo.
//   Options options;  std::string error;  if (!parseOptions(argc, argv, options, error)) { usage }

#include <string>

namespace demo {

struct Options {
    std::string bind = "127.0.0.1";
    // 0 asks for any free port; the one taken is printed.
    unsigned int port = 8000;
    // 0 runs until Ctrl-C.
    unsigned int seconds = 0;
    unsigned int agents = 8;
    unsigned int workers = 2;
    unsigned int seed = 0xFFFF000;
    bool seedGiven = false;
    unsigned int tickMilliseconds = 50;
    std::string load;
    std::string save = "tov-demo-world";
    bool tour = false;
    bool help = false;
};

// False with `error` set for an unknown option or a bad number.
bool parseOptions(int argc, const char* const* argv, Options& options, std::string& error);
const char* usage();

} // namespace demo
