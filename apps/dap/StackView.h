#pragma once
// StackView: what an editor reads while it debugs: the threads (the host's entities), a thread's stack
// of contexts top first, a frame's data as scopes and variables, a frame as a virtual document, and any
// resource of the host through evaluate. Frame ids and variable references live until the next resume.
//   StackView view;
//   Reply frames = view.stackTrace(host, {{"threadId", 4}});     // entity 3
//   Reply scopes = view.scopes(host, {{"frameId", frames.body["stackFrames"][0]["id"]}});

#include "apps/dap/AbstractHost.h"
#include "apps/dap/Reply.h"
#include "apps/dap/VariableStore.h"

#include <string>
#include <vector>

namespace tov {
namespace dap {

class StackView {
public:
    Reply threads(AbstractHost& host);
    Reply stackTrace(AbstractHost& host, const nlohmann::json& arguments);
    Reply scopes(AbstractHost& host, const nlohmann::json& arguments);
    Reply variables(const nlohmann::json& arguments);
    Reply source(AbstractHost& host, const nlohmann::json& arguments);
    Reply evaluate(AbstractHost& host, const nlohmann::json& arguments);
    // The simulation moved on: frames and variables of the last stop no longer mean anything.
    void forget();
    // What initialize said: whether the editor counts lines and columns from 1 (the default) or 0.
    void setFirstLineAndColumn(int line, int column);

private:
    struct Frame {
        unsigned int entity;
        unsigned int index;
        std::string location;
    };

    // GET of a path whose reply must be 200.
    static Reply fetch(AbstractHost& host, const std::string& path, nlohmann::json& body);
    bool findFrame(long long id, Frame& frame) const;
    nlohmann::json describeFrame(const Frame& frame, long long id, int sourceReference) const;
    static std::string sourceText(const Frame& frame, const nlohmann::json& contexts, const nlohmann::json& data);

    VariableStore store;
    // A frame's location stands on the first line of its document.
    int firstLine = 1;
    int firstColumn = 1;
    // Frame ids, like variable references, are not reused after a resume: a stale id is refused.
    long long firstFrame = 1;
    std::vector<Frame> frames;
    // Virtual documents stay readable for the whole session; each stack trace makes new ones, so that an
    // editor that caches a document by its reference never shows an old stop's data as new.
    std::vector<Frame> sources;
};

} // namespace dap
} // namespace tov
