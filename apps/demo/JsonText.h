#pragma once
// JSON texts in memory to and from property trees, for the demo's files and the tour's checks.
//   tov::utils::DynamicObject reply;  demo::readJson("{\"suspended\":true}", reply, logger);
//   std::string text = demo::writeJson(reply);

#include <tov/utils/All.h>

#include <string>

namespace demo {

// Into the root of `out`, which is cleared first; false when the text left nothing to read.
bool readJson(const std::string& text, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger);
std::string writeJson(const tov::utils::DynamicObject& object);

} // namespace demo
