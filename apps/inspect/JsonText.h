#pragma once
// JSON for the command line: texts quoted for a request body, replies indented for reading, and replies
// read into a DynamicObject for the tables. Reading goes through the library's JSON reader; a text counts
// as JSON only when one whole value came out of it.
//   std::string body = "{" + quoteJson("world") + ":true}";
//   std::string shown; if (indentJson("{\"a\":[1,2]}", shown)) std::cout << shown;   // {\n  "a": [ ...

#include <string>

namespace tov {
namespace utils {
class DynamicObject;
}

namespace inspect {

// The text as a JSON string literal, quotes included.
std::string quoteJson(const std::string& text);

// Two blanks a level, one member or element a line, reals in their shortest exact form.
bool indentJson(const std::string& text, std::string& indented);

// Into the root of `object`; false when the text is not one complete value, or holds a member name
// that a DynamicObject cannot take (such as one with a ".").
bool readJson(const std::string& text, utils::DynamicObject& object);

} // namespace inspect
} // namespace tov
