#pragma once
// The scripted inspector session of `tov-demo --tour`: lists the entities, sets a breakpoint, waits for
// the hit, reads the stack, steps over and out, resumes and reads the events, all through tov-inspect,
// printing each command with what the client printed. True when every step behaved.
//   bool passed = demo::runTour("http://127.0.0.1:8000", 8, std::cout);

#include <iosfwd>
#include <string>

namespace demo {

bool runTour(const std::string& url, unsigned int agents, std::ostream& out);

} // namespace demo
