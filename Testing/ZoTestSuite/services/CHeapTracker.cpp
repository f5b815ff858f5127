// CHeapTracker: registration, the dispatch of intercepted calls to the
// registered trackers, the per-tracker bookkeeping and the dump.
#include "services/CHeapTracker.h"

#include <algorithm>
#include <mutex>

#include "foundation/platform/System.h"

namespace TestSuite {

namespace {

// Constant-initialised and never destroyed: the first intercepted call may
// come before this file's static constructors, the last after its static
// destructors.
union UTrackerListStorage {
  constexpr UTrackerListStorage() : list() {}
  ~UTrackerListStorage() {}
  XbArray<CHeapTracker*> list;
};
constinit UTrackerListStorage g_TrackerListStorage;

// The dump's view of one live block.
struct SDumpEntry {
  std::uint64_t uiAddress;
  std::uint64_t uiID;
  std::uint64_t uiSize;
};

}  // namespace

HeapHooks::CTrackerLock CHeapTracker::s_CriticalSection;
XbArray<CHeapTracker*>& CHeapTracker::s_TrackerList = g_TrackerListStorage.list;
bool CHeapTracker::s_bDeactivateGlobal = false;
std::atomic<CHeapTracker*> CHeapTracker::s_pLoneTracker{nullptr};
bool CHeapTracker::s_bIsHooked = false;
HeapHooks::FnMalloc CHeapTracker::s_fnRealMalloc = nullptr;
HeapHooks::FnFree CHeapTracker::s_fnRealFree = nullptr;
HeapHooks::FnRealloc CHeapTracker::s_fnRealRealloc = nullptr;

CHeapTracker::CHeapTracker(bool activate, bool initialize) : m_bInitializeAtConstruction(initialize) {
  if (initialize) {
    Initialize();
    m_bActive = activate;
  }
}

CHeapTracker::~CHeapTracker() {
  if (m_bRegistered) {
    std::lock_guard lock(s_CriticalSection);
    for (unsigned int i = 0; i < s_TrackerList.GetCount(); ++i) {
      if (s_TrackerList[i] != this) continue;
      s_pLoneTracker.store(nullptr, std::memory_order_relaxed);
      s_bDeactivateGlobal = true;
      s_TrackerList.RemoveAt(i);
      s_bDeactivateGlobal = false;
      updateLoneTracker();
      break;
    }
  }
  // m_Allocations gives its memory back after this, unregistered.
}

void CHeapTracker::Initialize() {
  std::lock_guard lock(s_CriticalSection);
  if (!s_bIsHooked) {
    HeapHooks::Initialize();
    hook(HeapHooks::EFunction::Malloc, &dispatchMalloc, s_fnRealMalloc);
    hook(HeapHooks::EFunction::Free, &dispatchFree, s_fnRealFree);
    hook(HeapHooks::EFunction::Realloc, &dispatchRealloc, s_fnRealRealloc);
    s_bIsHooked = true;
  }
  // Growing the list allocates and frees; a nested dispatch must not walk it meanwhile.
  s_pLoneTracker.store(nullptr, std::memory_order_relaxed);
  s_bDeactivateGlobal = true;
  s_TrackerList.Add(this);
  s_bDeactivateGlobal = false;
  updateLoneTracker();
  Reset();
  m_bRegistered = true;
}

void CHeapTracker::updateLoneTracker() {
  s_pLoneTracker.store(s_TrackerList.GetCount() == 1 ? s_TrackerList[0] : nullptr, std::memory_order_relaxed);
}

void CHeapTracker::Reset() {
  m_Allocations.RemoveAll();
  m_uiMallocCount = 0;
  m_uiFreeCount = 0;
  m_uiReallocCount = 0;
  m_uiNextID = 0;
  m_iCurrentAlloc = 0;
  m_iCurrentMax = 0;
}

void CHeapTracker::UnhookAll() {
  std::lock_guard lock(s_CriticalSection);
  if (!s_bIsHooked) return;
  unhook(HeapHooks::EFunction::Malloc);
  unhook(HeapHooks::EFunction::Free);
  unhook(HeapHooks::EFunction::Realloc);
  s_fnRealMalloc = nullptr;
  s_fnRealFree = nullptr;
  s_fnRealRealloc = nullptr;
  HeapHooks::Uninitialize();
  s_bIsHooked = false;
}

template <typename TEntry, typename TObserver>
bool CHeapTracker::hook(HeapHooks::EFunction target, TObserver replacement, TEntry& savedEntry) {
  if (!savedEntry) {
    if (HeapHooks::CreateHook(replacement, &savedEntry) != 0) {
      savedEntry = nullptr;
      return false;
    }
    if (!savedEntry) return false;
  }
  return HeapHooks::EnableHook(target) == 0;
}

bool CHeapTracker::unhook(HeapHooks::EFunction target) { return HeapHooks::DisableHook(target) == 0; }

// The operation proper, with `active` cleared by the caller.
template <CHeapTracker::EOperation operation>
inline void CHeapTracker::perform(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size) {
  if constexpr (operation == EOperation::Malloc) {
    checkAllocation(m_uiNextID, size);
    ++m_uiMallocCount;
    trackAllocatedMemory(newAddress, size);
  } else if constexpr (operation == EOperation::Free) {
    ++m_uiFreeCount;
    trackDeallocatedMemory(oldAddress);
  } else {
    checkAllocation(m_uiNextID, size);
    ++m_uiReallocCount;
    // Out before in: the old and the new size are never added up.
    trackDeallocatedMemory(oldAddress);
    trackAllocatedMemory(newAddress, size);
  }
}

// A malloc or free of the lone tracker done in place, without allocating
// and so without clearing `active`; false, with nothing changed, where it
// needs more. A free never does: removing allocates nothing, also where
// entries behind the removed one move up.
template <CHeapTracker::EOperation operation>
inline bool CHeapTracker::performAlone(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size) {
  if constexpr (operation == EOperation::Malloc) {
    if ((m_uiObservedID & m_uiObservedSize) != c_uiObserveOff) return false;
    bool inserted = false;
    SAllocData* data = m_Allocations.TryFindOrInsert(newAddress, SAllocData{m_uiNextID, 1, size}, inserted);
    if (!data) return false;
    if (!inserted) addAgain(*data, size);
    ++m_uiMallocCount;
    m_iCurrentAlloc += static_cast<std::int64_t>(size);
  } else if constexpr (operation == EOperation::Free) {
    ++m_uiFreeCount;
    trackDeallocatedMemory(oldAddress);
  } else {
    return false;
  }
  countOperation();
  return true;
}

// An allocation at an address whose free was not seen: the address is live twice.
inline void CHeapTracker::addAgain(SAllocData& data, std::uint64_t size) const {
  ++data.iCount;
  data.uiSize += size;
  data.uiID = m_uiNextID;
}

// One allocation at an address goes: the entry goes with the last.
inline bool CHeapTracker::releaseOne(SAllocData& data) {
  if (--data.iCount != 0) return false;
  m_iCurrentAlloc -= static_cast<std::int64_t>(data.uiSize);
  return true;
}

inline void CHeapTracker::countOperation() {
  if (m_iCurrentAlloc > m_iCurrentMax) m_iCurrentMax = m_iCurrentAlloc;
  ++m_uiNextID;
}

inline void CHeapTracker::finishOperation() {
  countOperation();
  m_bActive = true;
}

inline void CHeapTracker::trackAllocatedMemory(std::uint64_t address, std::uint64_t size) {
  m_iCurrentAlloc += static_cast<std::int64_t>(size);
  bool inserted = false;
  SAllocData& data = m_Allocations.FindOrInsert(address, SAllocData{m_uiNextID, 1, size}, inserted);
  if (!inserted) addAgain(data, size);
}

inline void CHeapTracker::trackDeallocatedMemory(std::uint64_t address) {
  m_Allocations.RemoveIf(address, [this](SAllocData& data) { return releaseOne(data); });
}

inline void CHeapTracker::checkAllocation(std::uint64_t id, std::uint64_t size) const {
  if (m_uiObservedID != c_uiObserveOff && id == m_uiObservedID) ZoPlatform::System::RaiseTrap();
  if (m_uiObservedSize != c_uiObserveOff && size == m_uiObservedSize) ZoPlatform::System::RaiseTrap();
}

// One instance per operation, so that the allocator path decides nothing
// but which trackers are active. The usual case, one active tracker, is
// served in place: without lock, list walk or calls while the process has
// one thread, under a brief hold of the lock otherwise. Whatever needs more
// (memory for the map, a trap, entries to move, a second tracker, a lock
// that someone holds) goes the general way out of line.
template <CHeapTracker::EOperation operation>
inline void CHeapTracker::dispatch(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size) {
  // A tail call: the path of a single thread keeps its registers.
  if (!XbReentrantLock::IsProcessSingleThreaded()) return dispatchAmongThreads<operation>(oldAddress, newAddress, size);
  CHeapTracker* lone = s_pLoneTracker.load(std::memory_order_relaxed);
  if (lone && lone->m_bActive && lone->performAlone<operation>(oldAddress, newAddress, size)) return;
  dispatchToAll<operation>(oldAddress, newAddress, size);
}

template <CHeapTracker::EOperation operation>
void CHeapTracker::dispatchAmongThreads(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size) {
  CHeapTracker* lone = s_pLoneTracker.load(std::memory_order_relaxed);
  // Looked at before the hold, so that no tracker at work costs no lock.
  if (lone && lone->m_bActive && HeapHooks::g_TrackerLock.TryHold()) {
    // Held, the lock is held by nobody else: the list is not being changed
    // (s_bDeactivateGlobal is false), but it may have changed before.
    lone = s_pLoneTracker.load(std::memory_order_relaxed);
    const bool done = lone && lone->m_bActive && lone->performAlone<operation>(oldAddress, newAddress, size);
    HeapHooks::g_TrackerLock.ReleaseHold();
    if (done) return;
  }
  dispatchToAll<operation>(oldAddress, newAddress, size);
}

template <CHeapTracker::EOperation operation>
void CHeapTracker::dispatchToAll(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size) {
  // The bookkeeping below starts no thread.
  const HeapHooks::CTrackerScope lock;
  if (s_bDeactivateGlobal) return;
  // The count is read again after every tracker.
  for (unsigned int i = 0; i < s_TrackerList.GetCount(); ++i) {
    CHeapTracker& tracker = *s_TrackerList[i];
    if (!tracker.m_bActive) continue;
    tracker.m_bActive = false;
    tracker.perform<operation>(oldAddress, newAddress, size);
    tracker.finishOperation();
  }
}

void CHeapTracker::dispatchMalloc(void* address, std::uint64_t size) {
  dispatch<EOperation::Malloc>(0, toAddress(address), size);
}

void CHeapTracker::dispatchFree(void* address) { dispatch<EOperation::Free>(toAddress(address), 0, 0); }

void CHeapTracker::dispatchRealloc(void* oldAddress, void* newAddress, std::uint64_t size) {
  dispatch<EOperation::Realloc>(toAddress(oldAddress), toAddress(newAddress), size);
}

void CHeapTracker::track(EOperation operation, void* oldAddress, void* newAddress, std::uint64_t size) {
  if (!m_bActive) return;
  m_bActive = false;
  switch (operation) {
    case EOperation::Malloc: perform<EOperation::Malloc>(0, toAddress(newAddress), size); break;
    case EOperation::Free: perform<EOperation::Free>(toAddress(oldAddress), 0, 0); break;
    case EOperation::Realloc: perform<EOperation::Realloc>(toAddress(oldAddress), toAddress(newAddress), size); break;
  }
  finishOperation();
}

bool CHeapTracker::consistencyTest() const {
  if (m_iCurrentAlloc >= 1 && m_Allocations.IsEmpty()) return false;
  std::uint64_t sum = 0;
  m_Allocations.ForEach([&sum](std::uint64_t, const SAllocData& data) { sum += data.uiSize; });
  return static_cast<std::int64_t>(sum) == m_iCurrentAlloc;
}

std::uint64_t CHeapTracker::toAddress(void* address) { return reinterpret_cast<std::uintptr_t>(address); }

void CHeapTracker::dump(XbStreamWriteASCIIT<CString>& stream) {
  std::lock_guard lock(s_CriticalSection);
  // The dump's own allocations are not this tracker's business.
  struct SRestoreActive {
    bool& bActive;
    bool bWasActive;
    ~SRestoreActive() { bActive = bWasActive; }
  } restore{m_bActive, m_bActive};
  m_bActive = false;

  XbArray<SDumpEntry> entries;
  entries.Reserve(m_Allocations.GetCount());
  m_Allocations.ForEach([&entries](std::uint64_t address, const SAllocData& data) {
    entries.Add(SDumpEntry{address, data.uiID, data.uiSize});
  });
  std::sort(entries.begin(), entries.end(), [](const SDumpEntry& a, const SDumpEntry& b) { return a.uiID < b.uiID; });

  stream << L"CountMalloc " << m_uiMallocCount << L"\n";
  stream << L"CountFree " << m_uiFreeCount << L"\n";
  stream << L"CountRealloc " << m_uiReallocCount << L"\n";
  stream << L"CurrentAlloc " << m_iCurrentAlloc << L" Bytes\n";
  stream << L"CurrentMax " << m_iCurrentMax << L" Bytes\n";
  stream << L"Active Allocations:\n";
  CString line;
  for (const SDumpEntry& entry : entries) {
    line.Format(L"ID %lld, Address 0x%p, Size %lld Bytes.\n", entry.uiID, entry.uiAddress, entry.uiSize);
    stream << line;
  }
}

}  // namespace TestSuite
