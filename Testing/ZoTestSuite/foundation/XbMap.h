// XbMap: the hash map of the foundation layer. Iteration order is the
// hash order and means nothing; callers that need an order sort.
#pragma once

#include <unordered_map>
#include <utility>

#include "CString.h"

template <typename K, typename V, typename Hash = std::hash<K>>
class XbMap {
 public:
  using iterator = typename std::unordered_map<K, V, Hash>::iterator;
  using const_iterator = typename std::unordered_map<K, V, Hash>::const_iterator;

  unsigned int GetCount() const { return static_cast<unsigned int>(m_map.size()); }
  bool IsEmpty() const { return m_map.empty(); }

  // Copies the value of `key` into `value`; false if there is none.
  bool Lookup(const K& key, V& value) const {
    const auto it = m_map.find(key);
    if (it == m_map.end()) return false;
    value = it->second;
    return true;
  }
  const V* Find(const K& key) const {
    const auto it = m_map.find(key);
    return it == m_map.end() ? nullptr : &it->second;
  }
  V* Find(const K& key) {
    const auto it = m_map.find(key);
    return it == m_map.end() ? nullptr : &it->second;
  }
  bool Contains(const K& key) const { return m_map.count(key) != 0; }
  void SetAt(const K& key, V value) { m_map.insert_or_assign(key, std::move(value)); }
  V& operator[](const K& key) { return m_map[key]; }
  bool RemoveKey(const K& key) { return m_map.erase(key) != 0; }
  void RemoveAll() { m_map.clear(); }

  iterator begin() { return m_map.begin(); }
  iterator end() { return m_map.end(); }
  const_iterator begin() const { return m_map.begin(); }
  const_iterator end() const { return m_map.end(); }

  friend bool operator==(const XbMap& a, const XbMap& b) { return a.m_map == b.m_map; }

 private:
  std::unordered_map<K, V, Hash> m_map;
};
