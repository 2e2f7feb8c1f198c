#include "apps/dap/VariableStore.h"

#include <string>

namespace tov {
namespace dap {

namespace {
// A summary of a container lists this many members at most.
const std::size_t summaryMembers = 4;
} // namespace

int VariableStore::add(const nlohmann::json& value)
{
    if (!(value.is_object() || value.is_array()) || value.empty()) {
        return 0;
    }
    values.push_back(value);
    return firstReference + static_cast<int>(values.size()) - 1;
}

bool VariableStore::has(int reference) const
{
    return reference >= firstReference && reference - firstReference < static_cast<int>(values.size());
}

nlohmann::json VariableStore::list(int reference)
{
    nlohmann::json variables = nlohmann::json::array();
    if (!has(reference)) {
        return variables;
    }
    // A copy: adding children may move the stored values.
    const nlohmann::json value = values[reference - firstReference];
    if (value.is_object()) {
        for (auto member = value.begin(); member != value.end(); ++member) {
            variables.push_back(describe(member.key(), member.value()));
        }
    } else {
        for (std::size_t index = 0; index < value.size(); ++index) {
            variables.push_back(describe("[" + std::to_string(index) + "]", value[index]));
        }
    }
    return variables;
}

nlohmann::json VariableStore::describe(const std::string& name, const nlohmann::json& value)
{
    nlohmann::json variable = {
        {"name", name}, {"value", toText(value)}, {"type", typeOf(value)}, {"variablesReference", add(value)}};
    if (value.is_object()) {
        variable["namedVariables"] = value.size();
    } else if (value.is_array()) {
        variable["indexedVariables"] = value.size();
    }
    return variable;
}

void VariableStore::clear()
{
    firstReference += static_cast<int>(values.size());
    values.clear();
}

std::string VariableStore::toText(const nlohmann::json& value)
{
    if (value.is_object()) {
        std::string text = "{";
        std::size_t shown = 0;
        for (auto member = value.begin(); member != value.end() && shown < summaryMembers; ++member, ++shown) {
            text += (shown == 0 ? "" : ", ") + member.key();
        }
        return text + (value.size() > summaryMembers ? ", ...}" : "}");
    }
    if (value.is_array()) {
        return "array[" + std::to_string(value.size()) + "]";
    }
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string VariableStore::typeOf(const nlohmann::json& value)
{
    switch (value.type()) {
    case nlohmann::json::value_t::object:
        return "object";
    case nlohmann::json::value_t::array:
        return "array";
    case nlohmann::json::value_t::string:
        return "string";
    case nlohmann::json::value_t::boolean:
        return "boolean";
    case nlohmann::json::value_t::number_integer:
    case nlohmann::json::value_t::number_unsigned:
        return "integer";
    case nlohmann::json::value_t::number_float:
        return "real";
    default:
        return "null";
    }
}

} // namespace dap
} // namespace tov
