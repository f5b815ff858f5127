// CAddressMap: a hash map from a 64-bit address to a small plain value, kept
// in one table of slots with linear probing.
//
// It is the heap tracker's record of live blocks, and so is used from inside
// the process's malloc and free, once per intercepted call: steady use
// allocates nothing, and the memory it does take comes from the allocator
// through `TAllocator` (by default malloc and free, so an allocator
// interception sees it). Its speed there is that of the processor's branch
// prediction: a probe that goes past its first slot or a removal that has to
// shift its neighbours costs more than the rest of the look-up. So the table
// stays sparse while it is small: it starts with c_uiInitialSlots slots at the
// first insertion and doubles before the count exceeds a sixteenth of its
// slots; from c_uiDenseSlots slots on, where the table no longer fits a
// processor cache anyway, before the count exceeds half of them. Removal
// shifts the entries behind back, so no probe ever passes a gravestone.
//
// Every change leaves the map consistent before it calls the allocator.
// When it cannot get memory for a first table, or for a larger one once the
// present one is full, it throws XbException with the text "XbPlexManager";
// below that it goes on with the table it has.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "foundation/XbException.h"

namespace TestSuite {

// The default source of the map's memory.
struct CMallocAllocator {
  static void* Allocate(std::size_t size) { return std::malloc(size); }
  static void Free(void* memory) { std::free(memory); }
};

template <typename TValue, typename TAllocator = CMallocAllocator>
class CAddressMap {
  static_assert(std::is_trivially_copyable_v<TValue> && std::is_trivially_destructible_v<TValue>,
                "the table moves values as bytes and never destroys them");

 public:
  static constexpr unsigned int c_uiInitialSlots = 1024;
  static constexpr unsigned int c_uiDenseSlots = 65536;

  CAddressMap() = default;
  ~CAddressMap() { freeTable(); }
  CAddressMap(const CAddressMap&) = delete;
  CAddressMap& operator=(const CAddressMap&) = delete;

  unsigned int GetCount() const { return m_uiCount + (m_bHasZero ? 1 : 0); }
  bool IsEmpty() const { return GetCount() == 0; }
  // 0 before the first insertion of a key other than 0.
  unsigned int GetSlotCount() const { return m_pSlots ? m_uiMask + 1 : 0; }

  TValue* Find(std::uint64_t key) {
    if (key == 0) return m_bHasZero ? &m_ZeroValue : nullptr;
    if (m_uiCount == 0) return nullptr;
    SSlot* slot = probe(key);
    return slot->uiKey == key ? &slot->value : nullptr;
  }
  const TValue* Find(std::uint64_t key) const { return const_cast<CAddressMap*>(this)->Find(key); }

  // Adds `key`, which must not be in the map yet, and returns its value.
  TValue& Insert(std::uint64_t key, const TValue& value) {
    bool inserted = false;
    TValue& stored = FindOrInsert(key, value, inserted);
    stored = value;
    return stored;
  }

  // The value of `key`; if the map lacks it, adds it with `initial` first
  // and sets `inserted`. One probe sequence either way, unless the table
  // has to be made or to grow first.
  TValue& FindOrInsert(std::uint64_t key, const TValue& initial, bool& inserted) {
    if (TValue* value = TryFindOrInsert(key, initial, inserted)) return *value;
    return insertGrowing(key, initial, inserted);
  }

  // FindOrInsert where it needs no memory: null, with nothing changed, where
  // the table would have to be made or to grow. Calls nothing.
  TValue* TryFindOrInsert(std::uint64_t key, const TValue& initial, bool& inserted) {
    if (key == 0) {
      inserted = !m_bHasZero;
      if (inserted) m_ZeroValue = initial;
      m_bHasZero = true;
      return &m_ZeroValue;
    }
    if (!m_pSlots) return nullptr;
    SSlot* slot = probe(key);
    inserted = slot->uiKey != key;
    if (!inserted) return &slot->value;
    if (m_uiCount + 1 > m_uiLimit) return nullptr;
    return &place(slot, key, initial);
  }

  bool Remove(std::uint64_t key) {
    return RemoveIf(key, [](TValue&) { return true; });
  }

  // Finds `key` and hands its value to `done`, which may change it and
  // answers whether the entry goes. False if the map lacks the key or the
  // entry stays. Allocates nothing.
  template <typename TDone>
  bool RemoveIf(std::uint64_t key, TDone&& done) {
    if (key == 0) {
      if (!m_bHasZero || !done(m_ZeroValue)) return false;
      m_bHasZero = false;
      return true;
    }
    if (m_uiCount == 0) return false;
    SSlot* slot = probe(key);
    if (slot->uiKey != key || !done(slot->value)) return false;
    const auto index = static_cast<unsigned int>(slot - m_pSlots);
    // Mostly the next slot is free and nothing has to move.
    if (m_pSlots[(index + 1) & m_uiMask].uiKey == 0) slot->uiKey = 0;
    else shiftBack(index);
    --m_uiCount;
    return true;
  }

  // Empties the map; the table stays.
  void RemoveAll() {
    for (unsigned int i = 0; m_uiCount != 0 && i <= m_uiMask; ++i) m_pSlots[i].uiKey = 0;
    m_uiCount = 0;
    m_bHasZero = false;
  }

  // Calls fn(key, value) for every entry, in no particular order.
  template <typename TFn>
  void ForEach(TFn&& fn) const {
    if (m_bHasZero) fn(std::uint64_t{0}, m_ZeroValue);
    for (unsigned int i = 0; m_uiCount != 0 && i <= m_uiMask; ++i) {
      if (m_pSlots[i].uiKey != 0) fn(m_pSlots[i].uiKey, m_pSlots[i].value);
    }
  }

 private:
  // A key of 0 marks a free slot; the key 0 itself lives beside the table.
  struct SSlot {
    std::uint64_t uiKey;
    TValue value;
  };

  static std::size_t slotBytes(unsigned int slots) { return std::size_t{slots} * sizeof(SSlot); }

  // Fibonacci hashing: block addresses share their low bits, the high bits
  // of the product mix all of them.
  unsigned int home(std::uint64_t key) const {
    return static_cast<unsigned int>((key * 0x9E3779B97F4A7C15ull) >> m_uiShift);
  }

  // The slot that holds `key`, or else the free slot where it would go.
  // The table always has a free slot.
  SSlot* probe(std::uint64_t key) const {
    for (unsigned int i = home(key);; i = (i + 1) & m_uiMask) {
      SSlot* slot = &m_pSlots[i];
      if (slot->uiKey == key || slot->uiKey == 0) return slot;
    }
  }

  // Frees slot `hole` and moves back every entry behind it whose probe
  // sequence passes the hole.
  [[gnu::noinline]] void shiftBack(unsigned int hole) {
    for (unsigned int next = (hole + 1) & m_uiMask; m_pSlots[next].uiKey != 0; next = (next + 1) & m_uiMask) {
      // How far each of the two slots lies behind the entry's home slot.
      const unsigned int fromHome = (next - home(m_pSlots[next].uiKey)) & m_uiMask;
      if (fromHome < ((next - hole) & m_uiMask)) continue;
      m_pSlots[hole] = m_pSlots[next];
      hole = next;
    }
    m_pSlots[hole].uiKey = 0;
  }

  static unsigned int limitOf(unsigned int slots) { return slots < c_uiDenseSlots ? slots / 16 : slots / 2; }

  // Clears the keys only: a malloc followed by clearing all it got is what
  // the compiler may turn into calloc, which an interception of malloc
  // does not see.
  static SSlot* allocateSlots(unsigned int slots) {
    auto* table = static_cast<SSlot*>(TAllocator::Allocate(slotBytes(slots)));
    for (unsigned int i = 0; table && i < slots; ++i) table[i].uiKey = 0;
    return table;
  }

  // FindOrInsert's way when the table has to be made or to grow first.
  [[gnu::noinline]] TValue& insertGrowing(std::uint64_t key, const TValue& initial, bool& inserted) {
    if (!m_pSlots) createTable();
    SSlot* slot = probe(key);
    inserted = slot->uiKey != key;
    if (!inserted) return slot->value;
    if (m_uiCount + 1 > m_uiLimit && grow()) slot = probe(key);
    return place(slot, key, initial);
  }

  // Puts `key` into the free slot that the probe for it ended at.
  TValue& place(SSlot* slot, std::uint64_t key, const TValue& initial) {
    slot->uiKey = key;
    slot->value = initial;
    ++m_uiCount;
    return slot->value;
  }

  void createTable() {
    SSlot* table = allocateSlots(c_uiInitialSlots);
    if (!table) XB_THROW("XbPlexManager");
    adopt(table, c_uiInitialSlots);
  }

  void adopt(SSlot* table, unsigned int slots) {
    m_pSlots = table;
    m_uiMask = slots - 1;
    m_uiShift = 64 - static_cast<unsigned int>(__builtin_ctz(slots));
    m_uiLimit = limitOf(slots);
  }

  // Moves every entry into a table of twice the size; true if it did.
  // Without memory for it, the map keeps its table as long as one more
  // entry leaves a slot free.
  [[gnu::noinline]] bool grow() {
    const unsigned int oldSlots = m_uiMask + 1;
    SSlot* table = allocateSlots(oldSlots * 2);
    if (!table) {
      if (m_uiCount + 2 > oldSlots) XB_THROW("XbPlexManager");
      return false;
    }
    SSlot* old = m_pSlots;
    adopt(table, oldSlots * 2);
    for (unsigned int i = 0; i < oldSlots; ++i) {
      if (old[i].uiKey != 0) *probe(old[i].uiKey) = old[i];
    }
    TAllocator::Free(old);
    return true;
  }

  // Detaches the table first, so that the map is empty while memory goes back.
  void freeTable() {
    SSlot* table = m_pSlots;
    m_pSlots = nullptr;
    m_uiMask = 0;
    m_uiCount = 0;
    m_uiLimit = 0;
    m_bHasZero = false;
    if (table) TAllocator::Free(table);
  }

  SSlot* m_pSlots = nullptr;
  unsigned int m_uiMask = 0;
  unsigned int m_uiShift = 0;
  unsigned int m_uiCount = 0;  // entries in the table, the key 0 not among them
  unsigned int m_uiLimit = 0;  // the count above which the table doubles
  bool m_bHasZero = false;
  TValue m_ZeroValue{};
};

}  // namespace TestSuite
