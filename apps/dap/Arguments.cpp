#include "apps/dap/Arguments.h"

#include <climits>

namespace tov {
namespace dap {

bool Arguments::getInteger(const nlohmann::json& arguments, const char* key, long long& value)
{
    if (!arguments.is_object() || !arguments.contains(key) || !arguments[key].is_number_integer()) {
        return false;
    }
    value = arguments[key].get<long long>();
    return true;
}

bool Arguments::getString(const nlohmann::json& arguments, const char* key, std::string& value)
{
    if (!arguments.is_object() || !arguments.contains(key) || !arguments[key].is_string()) {
        return false;
    }
    value = arguments[key].get<std::string>();
    return true;
}

std::string Arguments::textOf(const nlohmann::json& object, const char* key)
{
    std::string text;
    return getString(object, key, text) ? text : std::string();
}

bool Arguments::flagOf(const nlohmann::json& object, const char* key, bool fallback)
{
    if (!object.is_object() || !object.contains(key) || !object[key].is_boolean()) {
        return fallback;
    }
    return object[key].get<bool>();
}

std::string Arguments::missing(const char* key, const char* kind)
{
    return std::string("the argument '") + key + "' (" + kind + ") is missing or of another kind";
}

bool Arguments::toEntity(long long thread, unsigned int& entity)
{
    if (thread < 1 || thread > static_cast<long long>(UINT_MAX)) {
        return false;
    }
    entity = static_cast<unsigned int>(thread - 1);
    return true;
}

} // namespace dap
} // namespace tov
