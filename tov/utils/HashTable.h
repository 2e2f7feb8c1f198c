#pragma once
// HashTable: maps a 64-bit key that is already a hash to a plain value. Two flat vectors with 32-bit
// chain links; entries keep the order of first insertion and are never erased, only cleared.
//   tov::utils::HashTable<int> table;
//   table.insert(hash, 7); if (table.has(hash)) use(table.get(hash));

#include <tov/utils/Assertion.h>
#include <tov/utils/Containers.h>
#include <tov/utils/details/Remainder.h>

namespace tov {
namespace utils {

template <typename T>
class HashTable {
public:
    static constexpr unsigned int NullIndex = 0xFFFFFFFFu;

    struct Entry {
        unsigned long long key;
        unsigned int next;
        T value;
    };

    using iterator = typename Vector<Entry>::iterator;
    using const_iterator = typename Vector<Entry>::const_iterator;

    bool has(unsigned long long key) const;
    // The value under the key, or null: one look-up where has() and get() would take two.
    const T* find(unsigned long long key) const;
    // An unknown key asserts "No value registered at <key>.".
    T& get(unsigned long long key);
    const T& get(unsigned long long key) const;
    // Adds an entry, or overwrites the value of the one with this key.
    void insert(unsigned long long key, const T& value);
    // As insert with the value that `make()` gives, when the key is absent; false, without calling
    // `make`, when it is present. One walk of the chain where has() and insert() take two.
    template <typename Make>
    bool insertIfAbsent(unsigned long long key, Make make);
    void clear();
    // Room for `count` entries, so that filling a table of a known size takes its entries in one block.
    void reserveEntries(unsigned int count);
    bool empty() const;
    unsigned int size() const;
    unsigned int countBuckets() const;

    iterator begin() { return entries.begin(); }
    iterator end() { return entries.end(); }
    const_iterator begin() const { return entries.begin(); }
    const_iterator end() const { return entries.end(); }

private:
    struct Location {
        unsigned int bucket;
        unsigned int index;
        unsigned int previous;
    };

    Location locate(unsigned long long key) const;
    unsigned int findIndex(unsigned long long key) const;
    void append(const Location& location, unsigned long long key, const T& value);
    void grow();
    void growWhenLoaded();

    Vector<Entry> entries;
    Vector<unsigned int> buckets;
};

} // namespace utils
} // namespace tov

#include <tov/utils/HashTable.inl>
