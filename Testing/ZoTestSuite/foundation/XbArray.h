// XbArray: the growing array of the foundation layer, a std::vector with
// the operation names the system is written against.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

template <typename T>
class XbArray {
 public:
  using value_type = T;
  using iterator = typename std::vector<T>::iterator;
  using const_iterator = typename std::vector<T>::const_iterator;

  XbArray() = default;
  XbArray(std::initializer_list<T> items) : m_items(items) {}
  explicit XbArray(std::vector<T> items) : m_items(std::move(items)) {}

  unsigned int GetCount() const { return static_cast<unsigned int>(m_items.size()); }
  bool IsEmpty() const { return m_items.empty(); }

  // Appends and returns the index of the new element.
  unsigned int Add(const T& item) {
    m_items.push_back(item);
    return GetCount() - 1;
  }
  unsigned int Add(T&& item) {
    m_items.push_back(std::move(item));
    return GetCount() - 1;
  }
  template <typename... Args>
  T& Emplace(Args&&... args) {
    return m_items.emplace_back(std::forward<Args>(args)...);
  }
  void Append(const XbArray& other) { m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end()); }
  void InsertAt(unsigned int index, const T& item) { m_items.insert(m_items.begin() + index, item); }
  void RemoveAt(unsigned int index, unsigned int count = 1) {
    m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
  }
  void RemoveAll() { m_items.clear(); }
  void SetCount(unsigned int count) { m_items.resize(count); }
  void Reserve(unsigned int count) { m_items.reserve(count); }

  T& operator[](unsigned int index) { return m_items[index]; }
  const T& operator[](unsigned int index) const { return m_items[index]; }
  T& GetAt(unsigned int index) { return m_items.at(index); }
  const T& GetAt(unsigned int index) const { return m_items.at(index); }
  T& Last() { return m_items.back(); }
  const T& Last() const { return m_items.back(); }

  iterator begin() { return m_items.begin(); }
  iterator end() { return m_items.end(); }
  const_iterator begin() const { return m_items.begin(); }
  const_iterator end() const { return m_items.end(); }

  std::vector<T>& Std() { return m_items; }
  const std::vector<T>& Std() const { return m_items; }

  friend bool operator==(const XbArray& a, const XbArray& b) { return a.m_items == b.m_items; }

 private:
  std::vector<T> m_items;
};
