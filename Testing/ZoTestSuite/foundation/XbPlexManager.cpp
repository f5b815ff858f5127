// The slot pool of the foundation layer's node containers.
#include "XbPlexManager.h"

#include <algorithm>
#include <new>

#include "XbException.h"

namespace {

// Slots and the block header are rounded up to this, so that every slot is
// aligned for any fundamental type.
constexpr std::size_t c_uiAlignment = alignof(std::max_align_t);

std::size_t roundUp(std::size_t size) { return (size + c_uiAlignment - 1) / c_uiAlignment * c_uiAlignment; }

}  // namespace

XbPlexManager::XbPlexManager(std::size_t slotSize, unsigned int slotsPerBlock)
    : m_uiSlotSize(roundUp(std::max(slotSize, sizeof(SFreeSlot)))), m_uiSlotsPerBlock(std::max(slotsPerBlock, 1u)) {}

XbPlexManager::~XbPlexManager() {
  while (m_pBlocks) {
    SBlock* next = m_pBlocks->pNext;
    ::operator delete(m_pBlocks);
    m_pBlocks = next;
  }
}

void* XbPlexManager::Allocate() {
  if (!m_pFreeSlots) addBlock();
  SFreeSlot* slot = m_pFreeSlots;
  m_pFreeSlots = slot->pNext;
  ++m_uiUsedCount;
  return slot;
}

void XbPlexManager::Free(void* slot) {
  if (!slot) return;
  auto* freed = static_cast<SFreeSlot*>(slot);
  freed->pNext = m_pFreeSlots;
  m_pFreeSlots = freed;
  --m_uiUsedCount;
}

void XbPlexManager::addBlock() {
  const std::size_t header = roundUp(sizeof(SBlock));
  void* memory = ::operator new(header + m_uiSlotSize * m_uiSlotsPerBlock, std::nothrow);
  if (!memory) XB_THROW("XbPlexManager");
  auto* block = static_cast<SBlock*>(memory);
  block->pNext = m_pBlocks;
  m_pBlocks = block;
  ++m_uiBlockCount;
  // The slots are chained in address order, so that a fresh block is handed
  // out front to back.
  char* first = static_cast<char*>(memory) + header;
  for (unsigned int i = m_uiSlotsPerBlock; i-- > 0;) {
    auto* slot = reinterpret_cast<SFreeSlot*>(first + i * m_uiSlotSize);
    slot->pNext = m_pFreeSlots;
    m_pFreeSlots = slot;
  }
}
