#pragma once

namespace tov {
namespace utils {

template <typename T>
bool HashTable<T>::has(unsigned long long key) const
{
    return findIndex(key) != NullIndex;
}

template <typename T>
const T* HashTable<T>::find(unsigned long long key) const
{
    const unsigned int index = findIndex(key);
    return index == NullIndex ? nullptr : &entries[index].value;
}

template <typename T>
T& HashTable<T>::get(unsigned long long key)
{
    return const_cast<T&>(static_cast<const HashTable&>(*this).get(key));
}

template <typename T>
const T& HashTable<T>::get(unsigned long long key) const
{
    const unsigned int index = findIndex(key);
    if (index == NullIndex) {
        TOV_ASSERT(false, "No value registered at " << key << ".");
        // Reached only when the assertion function returns: a value-initialised stand-in, so that the
        // caller reads something defined instead of memory out of bounds.
        static T missing{};
        missing = T{};
        return missing;
    }
    return entries[index].value;
}

template <typename T>
void HashTable<T>::insert(unsigned long long key, const T& value)
{
    if (buckets.empty()) {
        grow();
    }
    const Location location = locate(key);
    if (location.index != NullIndex) {
        entries[location.index].value = value;
    } else {
        append(location, key, value);
    }
    growWhenLoaded();
}

template <typename T>
template <typename Make>
bool HashTable<T>::insertIfAbsent(unsigned long long key, Make make)
{
    if (buckets.empty()) {
        grow();
    }
    const Location location = locate(key);
    if (location.index != NullIndex) {
        return false;
    }
    append(location, key, make());
    growWhenLoaded();
    return true;
}

template <typename T>
void HashTable<T>::growWhenLoaded()
{
    const float load = static_cast<float>(static_cast<double>(entries.size()) / static_cast<double>(buckets.size()));
    if (load >= 0.7f) {
        grow();
    }
}

template <typename T>
void HashTable<T>::clear()
{
    entries.clear();
    buckets.clear();
}

template <typename T>
void HashTable<T>::reserveEntries(unsigned int count)
{
    entries.reserve(count);
}

template <typename T>
bool HashTable<T>::empty() const
{
    return entries.empty();
}

template <typename T>
unsigned int HashTable<T>::size() const
{
    return static_cast<unsigned int>(entries.size());
}

template <typename T>
unsigned int HashTable<T>::countBuckets() const
{
    return static_cast<unsigned int>(buckets.size());
}

// Walks the key's chain; `previous` is the last entry of the chain when the key is absent, so that
// insert can link a new entry at the tail.
template <typename T>
typename HashTable<T>::Location HashTable<T>::locate(unsigned long long key) const
{
    Location location{0, NullIndex, NullIndex};
    if (buckets.empty()) {
        return location;
    }
    location.bucket = static_cast<unsigned int>(key % static_cast<unsigned long long>(buckets.size()));
    for (unsigned int index = buckets[location.bucket]; index != NullIndex; index = entries[index].next) {
        if (entries[index].key == key) {
            location.index = index;
            return location;
        }
        location.previous = index;
    }
    return location;
}

template <typename T>
unsigned int HashTable<T>::findIndex(unsigned long long key) const
{
    if (buckets.empty()) {
        return NullIndex;
    }
    for (unsigned int index = buckets[key % buckets.size()]; index != NullIndex; index = entries[index].next) {
        if (entries[index].key == key) {
            return index;
        }
    }
    return NullIndex;
}

// Adds an entry at the end and links it at the tail of the chain that `location` walked.
template <typename T>
void HashTable<T>::append(const Location& location, unsigned long long key, const T& value)
{
    const unsigned int index = static_cast<unsigned int>(entries.size());
    entries.push_back(Entry{key, NullIndex, value});
    if (location.previous != NullIndex) {
        entries[location.previous].next = index;
    } else {
        buckets[location.bucket] = index;
    }
}

// Rebuilds the chains over twice the entries plus ten buckets. Entries keep their indices, and the order
// of iteration; each chain runs in index order, as if the entries had been inserted again one by one,
// which linking them at the heads from the last entry to the first gives without walking any chain. Every
// key is divided by the same count, so its remainder is taken by multiplication (a string table's fill of
// 10,000 texts rebuilds 27 times).
template <typename T>
void HashTable<T>::grow()
{
    buckets.assign(entries.size() * 2 + 10, NullIndex);
    const details::Remainder byCount(buckets.size());
    for (unsigned int index = static_cast<unsigned int>(entries.size()); index-- > 0;) {
        unsigned int& head = buckets[static_cast<unsigned int>(byCount.of(entries[index].key))];
        entries[index].next = head;
        head = index;
    }
}

} // namespace utils
} // namespace tov
