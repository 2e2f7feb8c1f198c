#pragma once
// resources::Status: what became of a resource operation of an engine; the HTTP side turns it into a status.
//   if (engine.retrieveResource(path, length, &query, builder) == tov::utils::debugger::resources::Ok) { ... }

namespace tov {
namespace utils {
namespace debugger {
namespace resources {

// The numbers are part of the interface: hosts compare them and keep them in their own tables.
enum Status {
    NotFound = 0, // no such resource here
    Error = 1,    // the resource exists, but the operation failed or its arguments were bad
    Ok = 2        // done; the answer has been built
};

} // namespace resources
} // namespace debugger
} // namespace utils
} // namespace tov
