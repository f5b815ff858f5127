// CPooledAddressMap: a hash map from a 64-bit address to a small plain value,
// whose nodes come from a pool of blocks and are recycled.
//
// It is the heap tracker's record of live blocks, and so is used from inside
// the process's malloc and free: steady use allocates nothing, and the memory
// it does take comes from the allocator through `TAllocator` (by default
// malloc and free, so an allocator interception sees it). The table starts
// with 128 buckets at the first insertion and doubles when count times 4
// reaches buckets times 3. Every change leaves the map consistent before it
// calls the allocator. When the pool cannot get memory it throws XbException
// with the text "XbPlexManager".
#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "foundation/XbException.h"

namespace TestSuite {

// The default source of the map's memory.
struct CMallocAllocator {
  static void* Allocate(std::size_t size) { return std::malloc(size); }
  static void Free(void* memory) { std::free(memory); }
};

template <typename TValue, typename TAllocator = CMallocAllocator>
class CPooledAddressMap {
  static_assert(std::is_trivially_copyable_v<TValue> && std::is_trivially_destructible_v<TValue>,
                "the pool copies values as bytes and never destroys them");

 public:
  static constexpr unsigned int c_uiInitialBuckets = 128;
  static constexpr unsigned int c_uiNodesPerBlock = 64;

  CPooledAddressMap() = default;
  ~CPooledAddressMap() { freeAll(); }
  CPooledAddressMap(const CPooledAddressMap&) = delete;
  CPooledAddressMap& operator=(const CPooledAddressMap&) = delete;

  unsigned int GetCount() const { return m_uiCount; }
  bool IsEmpty() const { return m_uiCount == 0; }
  // 0 before the first insertion.
  unsigned int GetBucketCount() const { return m_uiBuckets; }

  TValue* Find(std::uint64_t key) {
    if (m_uiCount == 0) return nullptr;
    for (SNode* node = m_ppTable[bucketOf(key)]; node; node = node->pNext) {
      if (node->uiKey == key) return &node->value;
    }
    return nullptr;
  }
  const TValue* Find(std::uint64_t key) const { return const_cast<CPooledAddressMap*>(this)->Find(key); }

  // Adds `key`, which must not be in the map yet, and returns its value.
  TValue& Insert(std::uint64_t key, const TValue& value) {
    if (!m_ppTable) createTable();
    SNode* node = takeNode();
    node->uiKey = key;
    node->value = value;
    SNode*& head = m_ppTable[bucketOf(key)];
    node->pNext = head;
    head = node;
    ++m_uiCount;
    if (std::uint64_t{m_uiCount} * 4 >= std::uint64_t{m_uiBuckets} * 3) grow();
    return node->value;
  }

  // The value of `key`; if the map lacks it, adds it with `initial` first
  // and sets `inserted`. One walk of the chain either way.
  TValue& FindOrInsert(std::uint64_t key, const TValue& initial, bool& inserted) {
    if (m_uiCount != 0) {
      for (SNode* node = m_ppTable[bucketOf(key)]; node; node = node->pNext) {
        if (node->uiKey != key) continue;
        inserted = false;
        return node->value;
      }
    }
    inserted = true;
    return Insert(key, initial);
  }

  bool Remove(std::uint64_t key) {
    return RemoveIf(key, [](TValue&) { return true; });
  }

  // Finds `key` and hands its value to `done`, which may change it and
  // answers whether the entry goes; one walk of the chain. False if the
  // map lacks the key or the entry stays.
  template <typename TDone>
  bool RemoveIf(std::uint64_t key, TDone&& done) {
    if (m_uiCount == 0) return false;
    for (SNode** link = &m_ppTable[bucketOf(key)]; *link; link = &(*link)->pNext) {
      SNode* node = *link;
      if (node->uiKey != key) continue;
      if (!done(node->value)) return false;
      *link = node->pNext;
      node->pNext = m_pFreeNodes;
      m_pFreeNodes = node;
      --m_uiCount;
      return true;
    }
    return false;
  }

  // Empties the map. The nodes go back to the pool; table and pool stay.
  void RemoveAll() {
    for (unsigned int i = 0; i < m_uiBuckets; ++i) {
      while (SNode* node = m_ppTable[i]) {
        m_ppTable[i] = node->pNext;
        node->pNext = m_pFreeNodes;
        m_pFreeNodes = node;
      }
    }
    m_uiCount = 0;
  }

  // Calls fn(key, value) for every entry, in no particular order.
  template <typename TFn>
  void ForEach(TFn&& fn) const {
    for (unsigned int i = 0; i < m_uiBuckets && m_uiCount != 0; ++i) {
      for (const SNode* node = m_ppTable[i]; node; node = node->pNext) fn(node->uiKey, node->value);
    }
  }

 private:
  struct SNode {
    SNode* pNext;
    std::uint64_t uiKey;
    TValue value;
  };
  struct SBlock {
    SBlock* pNext;
    SNode nodes[c_uiNodesPerBlock];
  };

  // Fibonacci hashing: block addresses share their low bits, the high bits
  // of the product mix all of them.
  unsigned int bucketOf(std::uint64_t key) const {
    return static_cast<unsigned int>((key * 0x9E3779B97F4A7C15ull) >> (64 - m_uiShift));
  }

  static void* allocate(std::size_t size) {
    void* memory = TAllocator::Allocate(size);
    if (!memory) XB_THROW("XbPlexManager");
    return memory;
  }

  void createTable() {
    SNode** table = static_cast<SNode**>(allocate(c_uiInitialBuckets * sizeof(void*)));
    std::memset(table, 0, c_uiInitialBuckets * sizeof(void*));
    m_ppTable = table;
    m_uiBuckets = c_uiInitialBuckets;
    m_uiShift = 7;
  }

  SNode* takeNode() {
    if (!m_pFreeNodes) {
      auto* block = static_cast<SBlock*>(allocate(sizeof(SBlock)));
      block->pNext = m_pBlocks;
      m_pBlocks = block;
      for (unsigned int i = c_uiNodesPerBlock; i-- > 0;) {
        block->nodes[i].pNext = m_pFreeNodes;
        m_pFreeNodes = &block->nodes[i];
      }
    }
    SNode* node = m_pFreeNodes;
    m_pFreeNodes = node->pNext;
    return node;
  }

  // Relinks every node into a table of twice the size. Without memory for
  // it, the map keeps its table: longer chains, still correct.
  void grow() {
    const unsigned int buckets = m_uiBuckets * 2;
    auto** table = static_cast<SNode**>(TAllocator::Allocate(buckets * sizeof(void*)));
    if (!table) return;
    std::memset(table, 0, buckets * sizeof(void*));
    SNode** old = m_ppTable;
    const unsigned int oldBuckets = m_uiBuckets;
    m_ppTable = table;
    m_uiBuckets = buckets;
    ++m_uiShift;
    for (unsigned int i = 0; i < oldBuckets; ++i) {
      while (SNode* node = old[i]) {
        old[i] = node->pNext;
        SNode*& head = m_ppTable[bucketOf(node->uiKey)];
        node->pNext = head;
        head = node;
      }
    }
    TAllocator::Free(old);
  }

  // Detaches everything first, so that the map is empty while memory goes back.
  void freeAll() {
    SNode** table = m_ppTable;
    SBlock* blocks = m_pBlocks;
    m_ppTable = nullptr;
    m_pBlocks = nullptr;
    m_pFreeNodes = nullptr;
    m_uiBuckets = 0;
    m_uiCount = 0;
    if (table) TAllocator::Free(table);
    while (blocks) {
      SBlock* next = blocks->pNext;
      TAllocator::Free(blocks);
      blocks = next;
    }
  }

  SNode** m_ppTable = nullptr;
  unsigned int m_uiBuckets = 0;
  unsigned int m_uiShift = 0;
  unsigned int m_uiCount = 0;
  SNode* m_pFreeNodes = nullptr;
  SBlock* m_pBlocks = nullptr;
};

}  // namespace TestSuite
