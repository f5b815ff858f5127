// XbPlexManager: a pool of equal-sized memory slots for node-based
// containers, which takes memory from the allocator in blocks of many slots
// and recycles freed slots before it takes more.
#pragma once

#include <cstddef>

class XbPlexManager {
 public:
  // Every slot holds `slotSize` bytes (at least a pointer), aligned for any
  // fundamental type; a block holds `slotsPerBlock` slots (at least one).
  explicit XbPlexManager(std::size_t slotSize, unsigned int slotsPerBlock = 64);
  // Gives all blocks back at once: slots still in use become invalid, so a
  // container that shares the pool must go before it.
  ~XbPlexManager();
  XbPlexManager(const XbPlexManager&) = delete;
  XbPlexManager& operator=(const XbPlexManager&) = delete;

  // Raw memory of one slot; throws XbException ("XbPlexManager") when no
  // block can be had.
  void* Allocate();
  // Returns a slot of this pool for reuse; null is ignored.
  void Free(void* slot);

  std::size_t GetSlotSize() const { return m_uiSlotSize; }
  unsigned int GetBlockCount() const { return m_uiBlockCount; }
  // Slots handed out and not freed.
  unsigned int GetUsedCount() const { return m_uiUsedCount; }

 private:
  struct SFreeSlot {
    SFreeSlot* pNext;
  };
  struct SBlock {
    SBlock* pNext;
  };

  void addBlock();

  std::size_t m_uiSlotSize;
  unsigned int m_uiSlotsPerBlock;
  SBlock* m_pBlocks = nullptr;
  SFreeSlot* m_pFreeSlots = nullptr;
  unsigned int m_uiBlockCount = 0;
  unsigned int m_uiUsedCount = 0;
};
