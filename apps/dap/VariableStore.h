#pragma once
// VariableStore: the variable references of one stop. A JSON value read from the host gets a number;
// `variables` of that number lists its members, each object or array among them with a number of its
// own, so that an editor expands the tree one level at a time. References die at the next resume.
//   VariableStore store;
//   int reference = store.add(frameData);                 // 0 for a scalar: nothing to expand
//   nlohmann::json list = store.list(reference);           // [{"name":"energy","value":"9.75","type":"number",...}]

#include <nlohmann/json.hpp>

#include <vector>

namespace tov {
namespace dap {

class VariableStore {
public:
    // A reference for an object or array with members, 0 for anything else.
    int add(const nlohmann::json& value);
    bool has(int reference) const;
    // The DAP variables of the value behind `reference`; empty for an unknown one.
    nlohmann::json list(int reference);
    // One DAP variable (or evaluate body, with `result` for `value`): its text, type and reference.
    nlohmann::json describe(const std::string& name, const nlohmann::json& value);
    void clear();

    // The value as an editor shows it: strings quoted, containers summarised.
    static std::string toText(const nlohmann::json& value);
    static std::string typeOf(const nlohmann::json& value);

private:
    // References are never reused within a session, so a stale one from an old stop is refused
    // rather than answered with another value.
    int firstReference = 1;
    std::vector<nlohmann::json> values;
};

} // namespace dap
} // namespace tov
