#include "World.h"

#include "JsonText.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

namespace demo {

namespace {

const char* const agentsKey = "agents";

// The saved position of a random stream, as text: its seed and how many words it drew.
std::string randomText(const tov::utils::Random& random)
{
    unsigned int size = 0;
    char* saved = tov::utils::serializeRandom(size, random, nullptr);
    if (saved == nullptr) {
        return std::string();
    }
    std::string text(saved, size);
    TOV_DELETE_ARRAY(saved);
    return text;
}

void writeAgent(tov::utils::DynamicObject& out, const Agent& agent)
{
    const std::string key = std::string(agentsKey) + "[" + std::to_string(agent.getIndex()) + "]";
    const unsigned int entry = out.addProperty(key.c_str());
    out.setInt(out.addChild(entry, "id"), agent.getIndex());
    out.setString(out.addChild(entry, "name"), ("forager-" + std::to_string(agent.getIndex())).c_str());
    agent.writeState(out, entry);
    out.setString(out.addChild(entry, "random"), randomText(const_cast<Agent&>(agent).getRandom()).c_str());
}

// "an integer", "a string": the kind of a value as a refusal names it.
std::string describeKind(tov::utils::type::Type kind)
{
    const std::string name = tov::utils::toString(kind);
    return (name.find_first_of("aeiou") == 0 ? "an " : "a ") + name;
}

bool isAllDigits(const std::string& text)
{
    if (text.empty()) {
        return false;
    }
    for (char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c))) {
            return false;
        }
    }
    return true;
}

} // namespace

void World::reset(unsigned int seed, const std::vector<Agent*>& agents)
{
    std::lock_guard<std::mutex> guard(mutex);
    state.clear();
    state.setInt("seed", seed);
    state.setInt("tick", 0);
    state.resize(state.addProperty(agentsKey), static_cast<unsigned int>(agents.size()));
    for (const Agent* agent : agents) {
        writeAgent(state, *agent);
    }
}

void World::publish(const Agent& agent)
{
    std::lock_guard<std::mutex> guard(mutex);
    writeAgent(state, agent);
}

void World::setTick(long long tick)
{
    std::lock_guard<std::mutex> guard(mutex);
    state.setInt("tick", tick);
}

std::string World::toPropertyPath(const tov::utils::DynamicObject& object, const char* path, unsigned int length)
{
    std::string key;
    unsigned int at = object.getRoot();
    std::size_t start = 0;
    const std::string text(path, length);
    while (start < text.size()) {
        std::size_t end = text.find('/', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        const std::string segment = text.substr(start, end - start);
        start = end + 1;
        if (segment.empty()) {
            continue;
        }
        std::string next;
        if (object.getType(at) == tov::utils::type::array && isAllDigits(segment) && segment.size() < 6) {
            next = key + "[" + segment + "]";
        } else if (object.getType(at) == tov::utils::type::object &&
                   segment.find_first_of(".[]") == std::string::npos) {
            next = key.empty() ? segment : key + "." + segment;
        } else {
            return std::string();
        }
        at = object.getProperty(next.c_str());
        if (at == 0) {
            return std::string();
        }
        key = next;
    }
    return key.empty() ? std::string(1, '\0') : key;
}

bool World::serve(const char* path, unsigned int length, tov::utils::AbstractObjectBuilder& builder, unsigned int first,
                  unsigned int count) const
{
    std::lock_guard<std::mutex> guard(mutex);
    const std::string key = toPropertyPath(state, path, length);
    if (key.empty()) {
        return false;
    }
    if (key[0] == '\0') {
        return tov::utils::serializeDynamicObject(state, builder);
    }
    tov::utils::DynamicObject part;
    const unsigned int property = state.getProperty(key.c_str());
    const tov::utils::type::Type kind = state.getType(property);
    const unsigned int size = kind == tov::utils::type::array ? state.countChildren(property) : 0;
    if (kind == tov::utils::type::array && (first != 0 || count < size)) {
        const unsigned int end = first >= size ? first : first + std::min(count, size - first);
        part.resize(part.getRoot(), end - first);
        for (unsigned int i = first; i < end; ++i) {
            part.put(part.getChild(part.getRoot(), i - first), state, state.getChild(property, i));
        }
    } else if (kind == tov::utils::type::object || kind == tov::utils::type::array) {
        state.retrieve(property, part);
    } else {
        // A reply is an object or an array: a single value goes out under its own name, {"tick":42}.
        const std::size_t cut = key.find_last_of(".[");
        const std::string name = cut == std::string::npos ? key
                                                          : key.substr(cut + 1, key.back() == ']' ? key.size() - cut - 2
                                                                                                  : std::string::npos);
        part.put(part.addProperty(name.c_str()), state, property);
    }
    return tov::utils::serializeDynamicObject(part, builder);
}

bool World::save(const std::string& prefix, tov::utils::AbstractLogger* logger) const
{
    std::lock_guard<std::mutex> guard(mutex);
    const std::string jsonName = prefix + ".json";
    tov::utils::FileInputOutput json(jsonName.c_str());
    if (!json.openForWriting(logger) || !tov::utils::serializeDynamicObjectToJson(state, json, logger)) {
        return false;
    }
    // Closing flushes: a file that could not be completed is a failed save.
    if (!json.close(logger)) {
        return false;
    }

    unsigned int size = 0;
    char* saved = tov::utils::serializeDynamicObject(size, state, logger);
    if (saved == nullptr) {
        return false;
    }
    const std::string textName = prefix + ".txt";
    tov::utils::FileInputOutput text(textName.c_str());
    const bool written = text.openForWriting(logger) && text.write(saved, size, logger);
    TOV_DELETE_ARRAY(saved);
    const bool closed = text.close(logger);
    return written && closed;
}

bool World::load(const char* fileName, tov::utils::DynamicObject& out, std::string& reason)
{
    unsigned int size = 0;
    char* content = tov::utils::loadFile(fileName, size, nullptr);
    if (content == nullptr) {
        reason = "it cannot be read";
        return false;
    }
    unsigned int first = 0;
    while (first < size && std::isspace(static_cast<unsigned char>(content[first]))) {
        ++first;
    }
    bool read = false;
    out.clear();
    if (first < size && content[first] == '{') {
        read = readJson(std::string(content, size), out, nullptr);
        reason = "it holds no JSON object that can be read";
    } else {
        read = tov::utils::deserializeDynamicObject(content, size, out, nullptr) && !out.empty();
        reason = first == size ? "it is empty" : "it is neither JSON nor a saved text of this version";
    }
    TOV_DELETE_ARRAY(content);
    return read;
}

// Every value is read through a DynamicObjectReader: the file comes from outside, and the object's own
// getters assert on a value of the wrong kind.
bool World::read(const tov::utils::DynamicObject& world, unsigned int& seed, long long& tick,
                 std::vector<Agent*>& agents, std::string& reason)
{
    const tov::utils::DynamicObjectReader reader(world);
    long long number = 0;
    reason.clear();
    if (reader.has("seed")) {
        if (!reader.readInt("seed", number, nullptr) || number < 0 || number > 0xFFFFFFFFll) {
            reason = "'seed' is not a number from 0 to 4294967295";
            return false;
        }
        seed = static_cast<unsigned int>(number);
    }
    tick = 0;
    if (reader.has("tick") && (!reader.readInt("tick", tick, nullptr) || tick < 0)) {
        reason = "'tick' is not a count of rounds";
        return false;
    }
    const unsigned int list = world.getProperty(agentsKey);
    const tov::utils::type::Type kind = world.getType(list);
    if (kind != tov::utils::type::array || world.countChildren(list) == 0) {
        // The JSON reader gives an empty array no kind: it comes back null, like one that is absent.
        reason = kind == tov::utils::type::null || kind == tov::utils::type::array
                     ? "it has no agents"
                     : "'agents' is " + describeKind(kind) + ", not an array";
        return false;
    }
    const tov::utils::RandomManager& manager = tov::utils::Facilities::instance().getRandomNumberGenerator();
    const unsigned int count = world.countChildren(list);
    const std::size_t before = agents.size();
    for (unsigned int i = 0; i < count && reason.empty(); ++i) {
        const unsigned int entry = world.getChild(list, i);
        // Ids are the entities of the debugger, which expects them dense from 0: the index is the id.
        Agent* agent = TOV_NEW Agent(i, manager.createRandomStream(i));
        agents.push_back(agent);
        const char* text = nullptr;
        std::string problem;
        // An agent saved without members reads back null: it keeps its defaults.
        const tov::utils::type::Type kind = world.getType(entry);
        if (kind == tov::utils::type::object) {
            if (agent->readState(world, entry, problem) && world.getChild(entry, "random") != 0 &&
                (!reader.readString(world.getChild(entry, "random"), text, nullptr) ||
                 !tov::utils::deserializeRandom(text, static_cast<unsigned int>(std::strlen(text)), agent->getRandom(),
                                                nullptr))) {
                problem = "'random' is not a saved random stream";
            }
        } else if (kind != tov::utils::type::null) {
            problem = "it is " + describeKind(kind) + ", not an object";
        }
        if (!problem.empty()) {
            reason = "agent " + std::to_string(i) + ": " + problem;
        }
    }
    if (!reason.empty()) {
        for (std::size_t i = before; i < agents.size(); ++i) {
            TOV_DELETE(agents[i]);
        }
        agents.resize(before);
        return false;
    }
    return true;
}

} // namespace demo
