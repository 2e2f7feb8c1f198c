#include "World.h"

#include "JsonText.h"

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

bool World::serve(const char* path, unsigned int length, tov::utils::AbstractObjectBuilder& builder) const
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
    if (kind == tov::utils::type::object || kind == tov::utils::type::array) {
        state.retrieve(property, part);
    } else {
        // A reply is an object or an array: a single value goes out under its own name, {"tick":42}.
        const std::size_t cut = key.find_last_of(".[");
        const std::string name = cut == std::string::npos ? key : key.substr(cut + 1, key.back() == ']' ? key.size() - cut - 2 : std::string::npos);
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
    json.close(logger);

    unsigned int size = 0;
    char* saved = tov::utils::serializeDynamicObject(size, state, logger);
    if (saved == nullptr) {
        return false;
    }
    const std::string textName = prefix + ".txt";
    tov::utils::FileInputOutput text(textName.c_str());
    const bool written = text.openForWriting(logger) && text.write(saved, size, logger);
    TOV_DELETE_ARRAY(saved);
    text.close(logger);
    return written;
}

bool World::load(const char* fileName, tov::utils::DynamicObject& out, tov::utils::AbstractLogger* logger)
{
    unsigned int size = 0;
    char* content = tov::utils::loadFile(fileName, size, logger);
    if (content == nullptr) {
        return false;
    }
    unsigned int first = 0;
    while (first < size && std::isspace(static_cast<unsigned char>(content[first]))) {
        ++first;
    }
    bool read = false;
    out.clear();
    if (first < size && content[first] == '{') {
        read = readJson(std::string(content, size), out, logger);
    } else {
        read = tov::utils::deserializeDynamicObject(content, size, out, logger) && !out.empty();
    }
    TOV_DELETE_ARRAY(content);
    return read;
}

// Every kind is checked before reading: the file comes from outside, and readers assert on a wrong kind.
void World::readSeed(const tov::utils::DynamicObject& world, unsigned int& seed)
{
    const unsigned int seedProperty = world.getProperty("seed");
    if (world.getType(seedProperty) == tov::utils::type::integer) {
        seed = static_cast<unsigned int>(world.getInt(seedProperty));
    }
}

void World::readTick(const tov::utils::DynamicObject& world, long long& tick)
{
    const unsigned int tickProperty = world.getProperty("tick");
    if (world.getType(tickProperty) == tov::utils::type::integer && world.getInt(tickProperty) >= 0) {
        tick = world.getInt(tickProperty);
    }
}

std::vector<Agent*> World::createAgents(const tov::utils::DynamicObject& world, tov::utils::AbstractLogger* logger)
{
    std::vector<Agent*> agents;
    const unsigned int list = world.getProperty(agentsKey);
    if (world.getType(list) != tov::utils::type::array) {
        return agents;
    }
    const tov::utils::RandomManager& manager = tov::utils::Facilities::instance().getRandomNumberGenerator();
    const unsigned int count = world.countChildren(list);
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned int entry = world.getChild(list, i);
        // Ids are the entities of the debugger, which expects them dense from 0: the index is the id.
        Agent* agent = TOV_NEW Agent(i, manager.createRandomStream(i));
        if (world.getType(entry) == tov::utils::type::object) {
            agent->readState(world, entry);
            const unsigned int random = world.getChild(entry, "random");
            if (world.getType(random) == tov::utils::type::string) {
                const char* text = world.getString(random);
                if (text != nullptr) {
                    tov::utils::deserializeRandom(text, static_cast<unsigned int>(std::strlen(text)),
                                                  agent->getRandom(), logger);
                }
            }
        }
        agents.push_back(agent);
    }
    return agents;
}

} // namespace demo
