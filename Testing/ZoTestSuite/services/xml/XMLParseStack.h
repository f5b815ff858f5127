// CXMLParseStack: a growing array of plain values that the XML reader
// fills while it parses, such as the children of the open elements.
//
// Growth follows the reader's growth step (CXMLGrowth): at least one step
// of entries at a time, and never less than the array already holds, so
// that an element with a hundred thousand children costs a few dozen
// enlargements, not thousands.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

namespace TestSuite {

// The growth step of the reader's arrays: 50 entries while a parse runs,
// 0 outside, where arrays grow one entry at a time. A parse sets it for its
// own duration through a CXMLGrowth::CScope.
// Parses must not overlap; the step is atomic all the same, so that a
// mistaken overlap costs speed and not correctness.
struct CXMLGrowth {
  static inline std::atomic<int> s_iStep{0};
  static constexpr int c_iParseStep = 50;

  class CScope {
   public:
    CScope() { s_iStep.store(c_iParseStep, std::memory_order_relaxed); }
    ~CScope() { s_iStep.store(0, std::memory_order_relaxed); }
    CScope(const CScope&) = delete;
    CScope& operator=(const CScope&) = delete;
  };

  // The capacity after `uiCapacity` is exhausted.
  static std::size_t Next(std::size_t uiCapacity) {
    const int iStep = s_iStep.load(std::memory_order_relaxed);
    const std::size_t uiStep = iStep > 0 ? static_cast<std::size_t>(iStep) : 1;
    return uiCapacity + (uiCapacity > uiStep ? uiCapacity : uiStep);
  }
};

template <typename T>
class CXMLParseStack {
  static_assert(std::is_trivially_copyable_v<T>, "CXMLParseStack holds plain values only");

 public:
  CXMLParseStack() = default;
  ~CXMLParseStack() { std::free(m_pItems); }
  CXMLParseStack(const CXMLParseStack&) = delete;
  CXMLParseStack& operator=(const CXMLParseStack&) = delete;

  std::size_t Size() const { return m_uiSize; }
  bool IsEmpty() const { return m_uiSize == 0; }
  T* Data() { return m_pItems; }
  const T* Data() const { return m_pItems; }
  T& operator[](std::size_t i) { return m_pItems[i]; }
  const T& operator[](std::size_t i) const { return m_pItems[i]; }
  T& Back() { return m_pItems[m_uiSize - 1]; }

  void Push(const T& value) {
    if (m_uiSize == m_uiCapacity) reserve(m_uiSize + 1);
    m_pItems[m_uiSize++] = value;
  }
  // Appends `uiCount` uninitialised entries and returns the first of them.
  T* Extend(std::size_t uiCount) {
    if (m_uiCapacity - m_uiSize < uiCount) reserve(m_uiSize + uiCount);
    T* pFirst = m_pItems + m_uiSize;
    m_uiSize += uiCount;
    return pFirst;
  }
  void Truncate(std::size_t uiSize) {
    if (uiSize < m_uiSize) m_uiSize = uiSize;
  }
  void Pop() { --m_uiSize; }

 private:
  void reserve(std::size_t uiNeeded) {
    std::size_t uiCapacity = CXMLGrowth::Next(m_uiCapacity);
    if (uiCapacity < uiNeeded) uiCapacity = uiNeeded;
    void* pItems =
        std::realloc(m_pItems, uiCapacity * sizeof(T));  // NOLINT(bugprone-sizeof-expression): T may be a pointer
    if (!pItems) throw std::bad_alloc();
    m_pItems = static_cast<T*>(pItems);
    m_uiCapacity = uiCapacity;
  }

  T* m_pItems = nullptr;
  std::size_t m_uiSize = 0;
  std::size_t m_uiCapacity = 0;
};

}  // namespace TestSuite
