#pragma once
// StringTable: interns texts under their 64-bit hash, so that a value can be stored as a number.
//   StringTable table(100);
//   unsigned long long h = table.add("speed", nullptr);   // table.retrieve(h, "") == "speed"

#include <tov/utils/Export.h>
#include <tov/utils/HashTable.h>
#include <tov/utils/String.h>
#include <tov/utils/StringPool.h>

namespace tov {
namespace utils {

class AbstractLogger;

class TOV_UTILS_API StringTable {
public:
    explicit StringTable(unsigned int seed);
    // Deep copies: same seed and hashes, every text in a String of the copy's own.
    StringTable(const StringTable& other);
    StringTable& operator=(const StringTable& other);
    ~StringTable();

    // The hash of the text, storing it when new. With a logger a known hash is compared with its
    // stored text and a collision gives 0; without one the first text stands and nothing is compared.
    unsigned long long add(const char* text, AbstractLogger* logger);
    unsigned long long add(const char* text, unsigned int length, AbstractLogger* logger);
    // The hash of a text that must already be stored (asserts otherwise); 0 on a collision when a
    // logger is given.
    [[nodiscard]] unsigned long long hash(const char* text, AbstractLogger* logger) const;
    [[nodiscard]] unsigned long long hash(const char* text, unsigned int length, AbstractLogger* logger) const;
    // Whether `hash` holds exactly this text.
    [[nodiscard]] bool check(const char* text, const unsigned long long& hash, AbstractLogger* logger) const;
    [[nodiscard]] bool check(const char* text, unsigned int length, const unsigned long long& hash,
                             AbstractLogger* logger) const;
    // The stored text, valid until clear, assignment or destruction; `defaultValue` for 0 or an unknown hash.
    const char* retrieve(const unsigned long long& hash, const char* defaultValue) const;

    unsigned int getSeed() const;
    // Only on an empty table.
    void setSeed(unsigned int seed);
    bool empty() const;
    void clear();
    // QUIRK(string-table-reserve): does nothing, as the table grows by itself; kept for the callers that
    // size tables in advance.
    void reserve(unsigned int count);

    // MurmurHash64B of `length` bytes: two 32-bit lanes, the first in the high half of the result.
    static unsigned long long computeHash(const char* text, unsigned int length, unsigned int seed);

private:
    void copyEntries(const StringTable& other);

    HashTable<String*> table;
    StringPool pool;
    unsigned int seed;
};

} // namespace utils
} // namespace tov
