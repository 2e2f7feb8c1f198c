#include <tov/utils/StringTable.h>

#include <tov/utils/Assertion.h>
#include <tov/utils/Logging.h>
#include <tov/utils/Memory.h>

#include <cstring>

namespace tov {
namespace utils {

namespace {

const unsigned int murmurMultiplier = 0x5bd1e995u;
const int murmurShift = 24;

unsigned int readLittleEndian32(const unsigned char* bytes)
{
    return static_cast<unsigned int>(bytes[0]) | static_cast<unsigned int>(bytes[1]) << 8 |
           static_cast<unsigned int>(bytes[2]) << 16 | static_cast<unsigned int>(bytes[3]) << 24;
}

// One word into one lane.
void mixWord(unsigned int& lane, unsigned int word)
{
    word *= murmurMultiplier;
    word ^= word >> murmurShift;
    word *= murmurMultiplier;
    lane *= murmurMultiplier;
    lane ^= word;
}

} // namespace

StringTable::StringTable(unsigned int seed) : pool(0, 128), seed(seed) {}

StringTable::StringTable(const StringTable& other) : pool(0, 128), seed(other.seed)
{
    copyEntries(other);
}

StringTable& StringTable::operator=(const StringTable& other)
{
    if (this != &other) {
        clear();
        seed = other.seed;
        copyEntries(other);
    }
    return *this;
}

StringTable::~StringTable()
{
    // The texts go straight back to the memory service: recycling them into the pool first, as clear
    // does, would only grow the pool's list for the pool to delete them right after.
    for (auto& entry : table) {
        TOV_DELETE(entry.value);
    }
}

unsigned long long StringTable::add(const char* text, AbstractLogger* logger)
{
    TOV_ASSERT(text != nullptr, "Bad string.");
    if (text == nullptr) {
        return 0;
    }
    return add(text, static_cast<unsigned int>(std::strlen(text)), logger);
}

unsigned long long StringTable::add(const char* text, unsigned int length, AbstractLogger* logger)
{
    const unsigned long long key = computeHash(text, length, seed);
    const bool added = table.insertIfAbsent(key, [this, text, length] {
        String* stored = pool.obtain();
        stored->assign(text, length);
        return stored;
    });
    if (added) {
        return key;
    }
    if (logger != nullptr && !check(text, length, key, logger)) {
        return 0;
    }
    return key;
}

unsigned long long StringTable::hash(const char* text, AbstractLogger* logger) const
{
    TOV_ASSERT(text != nullptr, "Bad string.");
    if (text == nullptr) {
        return 0;
    }
    return hash(text, static_cast<unsigned int>(std::strlen(text)), logger);
}

unsigned long long StringTable::hash(const char* text, unsigned int length, AbstractLogger* logger) const
{
    const unsigned long long key = computeHash(text, length, seed);
    TOV_ASSERT(table.has(key), '"' << String(text, length) << "\" does not belong to the table.");
    if (logger != nullptr && !check(text, length, key, logger)) {
        return 0;
    }
    return key;
}

bool StringTable::check(const char* text, const unsigned long long& key, AbstractLogger* logger) const
{
    TOV_ASSERT(text != nullptr, "Bad string.");
    if (text == nullptr) {
        return false;
    }
    return check(text, static_cast<unsigned int>(std::strlen(text)), key, logger);
}

bool StringTable::check(const char* text, unsigned int length, const unsigned long long& key,
                        AbstractLogger* logger) const
{
    TOV_ASSERT(text != nullptr, "Bad string.");
    if (text == nullptr) {
        return false;
    }
    String* const* found = table.find(key);
    if (found == nullptr) {
        TOV_LOG_ERROR(logger, error::invalidConfiguration,
                      '"' << String(text, length) << "\" is not registered with the table.");
        return false;
    }
    const String& stored = **found;
    if (stored.size() == length && std::strncmp(stored.c_str(), text, length) == 0) {
        return true;
    }
    TOV_LOG_ERROR(logger, error::stringHashCollision,
                  '"' << String(text, length) << "\" and \"" << stored << "\" (seed=" << seed << ").");
    return false;
}

const char* StringTable::retrieve(const unsigned long long& key, const char* defaultValue) const
{
    String* const* found = key == 0 ? nullptr : table.find(key);
    return found == nullptr ? defaultValue : (*found)->c_str();
}

unsigned int StringTable::getSeed() const
{
    return seed;
}

void StringTable::setSeed(unsigned int newSeed)
{
    TOV_ASSERT(table.empty(), "Can't change the seed of a non-empty table.");
    seed = newSeed;
}

bool StringTable::empty() const
{
    return table.empty();
}

void StringTable::clear()
{
    for (auto& entry : table) {
        pool.recycle(entry.value);
    }
    table.clear();
}

void StringTable::reserve(unsigned int /*count*/) {}

unsigned long long StringTable::computeHash(const char* text, unsigned int length, unsigned int seed)
{
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
    unsigned int first = seed ^ length;
    unsigned int second = 0;
    while (length >= 8) {
        mixWord(first, readLittleEndian32(bytes));
        mixWord(second, readLittleEndian32(bytes + 4));
        bytes += 8;
        length -= 8;
    }
    if (length >= 4) {
        mixWord(first, readLittleEndian32(bytes));
        bytes += 4;
        length -= 4;
    }
    switch (length) {
    case 3:
        second ^= static_cast<unsigned int>(bytes[2]) << 16;
        [[fallthrough]];
    case 2:
        second ^= static_cast<unsigned int>(bytes[1]) << 8;
        [[fallthrough]];
    case 1:
        second ^= bytes[0];
        second *= murmurMultiplier;
    }
    first ^= second >> 18;
    first *= murmurMultiplier;
    second ^= first >> 22;
    second *= murmurMultiplier;
    first ^= second >> 17;
    first *= murmurMultiplier;
    second ^= first >> 19;
    second *= murmurMultiplier;
    return static_cast<unsigned long long>(first) << 32 | second;
}

void StringTable::copyEntries(const StringTable& other)
{
    // A copy knows its size: its entries take one block of exactly that many.
    table.reserveEntries(other.table.size());
    for (const auto& entry : other.table) {
        String* stored = pool.obtain();
        *stored = *entry.value;
        table.insert(entry.key, stored);
    }
}

} // namespace utils
} // namespace tov
