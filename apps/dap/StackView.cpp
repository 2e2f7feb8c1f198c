#include "apps/dap/StackView.h"

#include "apps/common/HostAddress.h"
#include "apps/dap/Arguments.h"

#include <algorithm>

namespace tov {
namespace dap {

namespace {

std::string entityPath(unsigned int entity)
{
    return "debug/entities/" + std::to_string(entity) + "/contexts";
}

// The last part of a location names the document: "forager.behavior#seek".
std::string shortName(const std::string& location)
{
    const std::size_t slash = location.find_last_of("/:");
    return slash == std::string::npos || slash + 1 == location.size() ? location : location.substr(slash + 1);
}

} // namespace

Reply StackView::fetch(AbstractHost& host, const std::string& path, nlohmann::json& body)
{
    HostAnswer answer;
    if (!host.call("GET", path, nullptr, answer)) {
        return Reply::failure(answer.error, true);
    }
    if (answer.status != 200) {
        return Reply::failure("GET /api/" + path + ": " + answer.error);
    }
    body = answer.body;
    return Reply::success();
}

Reply StackView::threads(AbstractHost& host)
{
    nlohmann::json entities;
    Reply reply = fetch(host, "debug/entities", entities);
    if (!reply.ok) {
        return reply;
    }
    nlohmann::json threads = nlohmann::json::array();
    for (const nlohmann::json& entity : entities.is_array() ? entities : nlohmann::json::array()) {
        if (entity.is_object() && entity.contains("index") && entity["index"].is_number_unsigned()) {
            const unsigned int id = entity["index"].get<unsigned int>();
            threads.push_back({{"id", Arguments::toThread(id)}, {"name", "entity " + std::to_string(id)}});
        }
    }
    return Reply::success({{"threads", threads}});
}

Reply StackView::stackTrace(AbstractHost& host, const nlohmann::json& arguments)
{
    long long thread = 0;
    unsigned int entity = 0;
    if (!Arguments::getInteger(arguments, "threadId", thread) || !Arguments::toEntity(thread, entity)) {
        return Reply::failure(Arguments::missing("threadId", "a thread of the threads request"));
    }
    nlohmann::json contexts;
    Reply reply = fetch(host, entityPath(entity), contexts);
    if (!reply.ok) {
        return reply.hostGone ? reply : Reply::failure("no thread " + std::to_string(thread) + ": " + reply.message);
    }
    if (!contexts.is_array()) {
        contexts = nlohmann::json::array();
    }
    long long start = 0;
    long long levels = 0;
    Arguments::getInteger(arguments, "startFrame", start);
    Arguments::getInteger(arguments, "levels", levels);
    const long long total = static_cast<long long>(contexts.size());
    start = std::max(0LL, std::min(start, total));
    const long long end = levels > 0 ? std::min(total, start + levels) : total;
    nlohmann::json stackFrames = nlohmann::json::array();
    for (long long depth = start; depth < end; ++depth) {
        const nlohmann::json& context = contexts[static_cast<std::size_t>(total - 1 - depth)];
        Frame frame{entity, static_cast<unsigned int>(total - 1 - depth), Arguments::textOf(context, "location")};
        frames.push_back(frame);
        sources.push_back(frame);
        stackFrames.push_back(describeFrame(frame, firstFrame + static_cast<long long>(frames.size()) - 1,
                                            static_cast<int>(sources.size())));
    }
    return Reply::success({{"stackFrames", stackFrames}, {"totalFrames", total}});
}

nlohmann::json StackView::describeFrame(const Frame& frame, long long id, int sourceReference) const
{
    nlohmann::json source = {
        {"name", shortName(frame.location)},
        {"sourceReference", sourceReference},
        {"origin", "entity " + std::to_string(frame.entity) + ", frame " + std::to_string(frame.index)}};
    return {{"id", id},
            {"name", frame.location},
            {"source", source},
            {"line", firstLine},
            {"column", firstColumn},
            // The bottom frame is the one every entity has: the simulation itself.
            {"presentationHint", frame.index == 0 ? "subtle" : "normal"}};
}

bool StackView::findFrame(long long id, Frame& frame) const
{
    if (id < firstFrame || id - firstFrame >= static_cast<long long>(frames.size())) {
        return false;
    }
    frame = frames[static_cast<std::size_t>(id - firstFrame)];
    return true;
}

Reply StackView::scopes(AbstractHost& host, const nlohmann::json& arguments)
{
    long long id = 0;
    Frame frame;
    if (!Arguments::getInteger(arguments, "frameId", id)) {
        return Reply::failure(Arguments::missing("frameId", "an integer"));
    }
    if (!findFrame(id, frame)) {
        return Reply::failure("no frame " + std::to_string(id) + ": frames of a stop end when the simulation resumes");
    }
    nlohmann::json data;
    Reply reply = fetch(host, entityPath(frame.entity) + "/" + std::to_string(frame.index), data);
    if (!reply.ok) {
        return reply;
    }
    nlohmann::json scope = {{"name", "Frame data"},
                            {"presentationHint", "locals"},
                            {"expensive", false},
                            {"variablesReference", store.add(data)}};
    if (data.is_object()) {
        scope["namedVariables"] = data.size();
    }
    return Reply::success({{"scopes", nlohmann::json::array({scope})}});
}

Reply StackView::variables(const nlohmann::json& arguments)
{
    long long reference = 0;
    if (!Arguments::getInteger(arguments, "variablesReference", reference)) {
        return Reply::failure(Arguments::missing("variablesReference", "an integer"));
    }
    if (!store.has(static_cast<int>(reference))) {
        return Reply::failure("no variables " + std::to_string(reference) +
                              ": references end when the simulation resumes");
    }
    nlohmann::json list = store.list(static_cast<int>(reference));
    long long start = 0;
    long long count = 0;
    // Editors page through long arrays.
    if (Arguments::getInteger(arguments, "start", start) && start > 0) {
        list.erase(list.begin(), list.begin() + std::min<long long>(start, static_cast<long long>(list.size())));
    }
    if (Arguments::getInteger(arguments, "count", count) && count > 0 && count < static_cast<long long>(list.size())) {
        list.erase(list.begin() + count, list.end());
    }
    return Reply::success({{"variables", list}});
}

Reply StackView::source(AbstractHost& host, const nlohmann::json& arguments)
{
    long long reference = 0;
    if (!Arguments::getInteger(arguments, "sourceReference", reference) &&
        !(arguments.is_object() &&
          Arguments::getInteger(arguments.value("source", nlohmann::json()), "sourceReference", reference))) {
        return Reply::failure(Arguments::missing("sourceReference", "an integer"));
    }
    if (reference < 1 || reference > static_cast<long long>(sources.size())) {
        return Reply::failure("no document " + std::to_string(reference) + ": only frames of a stack trace have one");
    }
    const Frame& frame = sources[static_cast<std::size_t>(reference - 1)];
    nlohmann::json contexts;
    Reply reply = fetch(host, entityPath(frame.entity), contexts);
    nlohmann::json data;
    if (reply.ok && contexts.is_array() && frame.index < contexts.size()) {
        reply = fetch(host, entityPath(frame.entity) + "/" + std::to_string(frame.index), data);
    }
    if (!reply.ok) {
        return reply;
    }
    return Reply::success({{"content", sourceText(frame, contexts, data)}, {"mimeType", "text/plain"}});
}

std::string StackView::sourceText(const Frame& frame, const nlohmann::json& contexts, const nlohmann::json& data)
{
    std::string text = frame.location + "\n\n";
    const bool there = contexts.is_array() && frame.index < contexts.size() &&
                       Arguments::textOf(contexts[frame.index], "location") == frame.location;
    if (!there) {
        return text + "This frame has returned: entity " + std::to_string(frame.entity) +
               " is no longer at this location.\n";
    }
    text += "entity " + std::to_string(frame.entity) + ", frame " + std::to_string(frame.index) + " of " +
            std::to_string(contexts.size()) + ", its data when this document was read:\n\n";
    return text +
           (data.is_null() ? std::string("(no data)")
                           : data.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)) +
           "\n";
}

Reply StackView::evaluate(AbstractHost& host, const nlohmann::json& arguments)
{
    std::string expression;
    if (!Arguments::getString(arguments, "expression", expression)) {
        return Reply::failure(Arguments::missing("expression", "a resource path such as world/agents/3"));
    }
    const std::string path = client::HostAddress::toResourcePath(expression);
    if (path.empty()) {
        return Reply::failure("evaluate reads a resource path of the host, such as world/agents/3");
    }
    nlohmann::json value;
    Reply reply = fetch(host, path, value);
    if (!reply.ok) {
        return reply;
    }
    nlohmann::json result = store.describe(expression, value);
    nlohmann::json body = {
        {"result", result["value"]}, {"type", result["type"]}, {"variablesReference", result["variablesReference"]}};
    for (const char* count : {"namedVariables", "indexedVariables"}) {
        if (result.contains(count)) {
            body[count] = result[count];
        }
    }
    return Reply::success(body);
}

void StackView::setFirstLineAndColumn(int line, int column)
{
    firstLine = line;
    firstColumn = column;
}

void StackView::forget()
{
    store.clear();
    firstFrame += static_cast<long long>(frames.size());
    frames.clear();
}

} // namespace dap
} // namespace tov
