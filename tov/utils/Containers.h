#pragma once
// Vector, Map, Set, Deque: the standard containers over the memory service, adding nothing else.
//   tov::utils::Vector<unsigned int> handles;
//   tov::utils::Map<tov::utils::String, int> byName;

#include <tov/allocator/StdAllocator.h>

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace tov {
namespace utils {

template <typename T, typename A = allocator::StdAllocator<T>>
struct Vector : std::vector<T, A> {
    using std::vector<T, A>::vector;
    using std::vector<T, A>::operator=;
    Vector() = default;
};

template <typename K, typename V, typename Compare = std::less<K>,
          typename A = allocator::StdAllocator<std::pair<const K, V>>>
struct Map : std::map<K, V, Compare, A> {
    using std::map<K, V, Compare, A>::map;
    using std::map<K, V, Compare, A>::operator=;
    Map() = default;
};

template <typename T, typename Compare = std::less<T>, typename A = allocator::StdAllocator<T>>
struct Set : std::set<T, Compare, A> {
    using std::set<T, Compare, A>::set;
    using std::set<T, Compare, A>::operator=;
    Set() = default;
};

template <typename T, typename A = allocator::StdAllocator<T>>
struct Deque : std::deque<T, A> {
    using std::deque<T, A>::deque;
    using std::deque<T, A>::operator=;
    Deque() = default;
};

} // namespace utils
} // namespace tov
