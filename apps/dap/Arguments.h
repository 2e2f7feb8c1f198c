#pragma once
// Arguments: reads the members of a request's "arguments" with their kinds checked, so that a missing
// or mistyped member becomes a refusal that names it instead of an exception.
//   long long thread = 0;
//   if (!Arguments::getInteger(arguments, "threadId", thread)) return Reply::failure(Arguments::missing("threadId", "an integer"));

#include <nlohmann/json.hpp>

#include <string>

namespace tov {
namespace dap {

class Arguments {
public:
    static bool getInteger(const nlohmann::json& arguments, const char* key, long long& value);
    static bool getString(const nlohmann::json& arguments, const char* key, std::string& value);
    // A member read from a reply or a request whatever it holds: the text, or "" when `object` is no
    // object or the member no string; the flag, or `fallback` when it is no boolean.
    static std::string textOf(const nlohmann::json& object, const char* key);
    static bool flagOf(const nlohmann::json& object, const char* key, bool fallback);
    // "the argument 'threadId' (an integer) is missing or of another kind"
    static std::string missing(const char* key, const char* kind);

    // DAP threads are the host's entities, numbered from 1 because some editors take 0 for no thread.
    static long long toThread(unsigned int entity) { return static_cast<long long>(entity) + 1; }
    static bool toEntity(long long thread, unsigned int& entity);
};

} // namespace dap
} // namespace tov
