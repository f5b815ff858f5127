// CHeapTracker: counts what running code does with the heap (allocations,
// frees, reallocations, live bytes, their peak, and the blocks still live),
// fed by a process-wide interception of malloc, free and realloc.
//
// Every registered tracker sees every intercepted call of every thread while
// it is active; there is no filter by thread, so the numbers are exact only
// while nothing else in the process allocates. Harness work that must not
// count is bracketed with Deactivate and Activate.
//
// Locking. Every intercepted call takes s_CriticalSection, a re-entrant lock,
// once the process has had a second thread (before that, nobody can contend):
// a tracker's own map allocates through the intercepted malloc, so a dispatch
// nests on the same thread. A tracker at work has `active` cleared and skips
// itself in the nested dispatch; a second active tracker does count the first
// one's internal allocations. Getters, Activate, Deactivate, ObserveID,
// ObserveSize and Reset take no lock.
//
// The numbers count calls, not successes: a failed malloc is a block at
// address 0, free(nullptr) counts as a free, realloc(nullptr, n) as a
// realloc. A free of a block the tracker never saw counts as a free and
// changes nothing else; a realloc of such a block records its new address
// with the whole new size.
#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/CString.h"
#include "foundation/INonCopyable.h"
#include "foundation/XbArray.h"
#include "foundation/XbIDumpable.h"
#include "foundation/XbStream.h"
#include "services/CAddressMap.h"
#include "services/platform/HeapHooks.h"

namespace TestSuite {

class CHeapTracker : public INonCopyable, public XbIDumpable<1> {
 public:
  // What the tracker knows of one live address.
  struct SAllocData {
    std::uint64_t uiID;    // next-ID value at the last allocation seen here
    std::int32_t iCount;   // allocations seen here without a matching free
    std::uint64_t uiSize;  // bytes of all those allocations added up
  };

  enum class EOperation { Malloc = 0, Free = 1, Realloc = 2 };

  // Value of ObserveID and ObserveSize that switches the observation off.
  static constexpr std::uint64_t c_uiObserveOff = ~std::uint64_t{0};

  // With `initialize`, calls Initialize and then sets `active` to
  // `activate`; without it, the tracker stays unregistered and inactive
  // whatever `activate` says.
  CHeapTracker(bool activate, bool initialize);
  CHeapTracker() : CHeapTracker(true, true) {}
  ~CHeapTracker() override;

  // Installs the interception if it is not installed, registers this
  // tracker and resets it. Call it once per tracker.
  void Initialize();
  // Empties the map and zeroes the six counters; `active`, the registration
  // and the observed ID and size stay.
  void Reset();

  void Activate() { m_bActive = true; }
  void Deactivate() { m_bActive = false; }
  bool IsActive() const { return m_bActive; }

  std::uint64_t GetMallocCount() const { return m_uiMallocCount; }
  std::uint64_t GetFreeCount() const { return m_uiFreeCount; }
  std::uint64_t GetReallocCount() const { return m_uiReallocCount; }
  std::int64_t GetCurrentAlloc() const { return m_iCurrentAlloc; }
  std::int64_t GetCurrentMax() const { return m_iCurrentMax; }

  // A malloc or realloc with this operation number (counting from 0 at the
  // last Reset, frees included) or with this size stops the process in a
  // debugger (a breakpoint trap; without a debugger the process ends).
  void ObserveID(std::uint64_t id) { m_uiObservedID = id; }
  void ObserveSize(std::uint64_t size) { m_uiObservedSize = size; }

  // Removes the interception. Trackers that are alive see nothing more
  // until a tracker is initialised again.
  static void UnhookAll();

 private:
  // The tests reach track and consistencyTest, which have no caller here.
  friend class CHeapTrackerTestAccess;

  template <typename TEntry, typename TObserver>
  static bool hook(HeapHooks::EFunction target, TObserver replacement, TEntry& savedEntry);
  static bool unhook(HeapHooks::EFunction target);

  template <EOperation operation>
  static void dispatch(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size);
  // The dispatch of a process that has had more than one thread.
  template <EOperation operation>
  [[gnu::noinline]] static void dispatchAmongThreads(std::uint64_t oldAddress, std::uint64_t newAddress,
                                                     std::uint64_t size);
  template <EOperation operation>
  [[gnu::noinline]] static void dispatchToAll(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size);
  static void updateLoneTracker();
  static void dispatchMalloc(void* address, std::uint64_t size);
  static void dispatchFree(void* address);
  static void dispatchRealloc(void* oldAddress, void* newAddress, std::uint64_t size);

  void track(EOperation operation, void* oldAddress, void* newAddress, std::uint64_t size);
  template <EOperation operation>
  void perform(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size);
  template <EOperation operation>
  bool performAlone(std::uint64_t oldAddress, std::uint64_t newAddress, std::uint64_t size);
  void countOperation();
  void finishOperation();
  void addAgain(SAllocData& data, std::uint64_t size) const;
  bool releaseOne(SAllocData& data);
  void trackAllocatedMemory(std::uint64_t address, std::uint64_t size);
  void trackDeallocatedMemory(std::uint64_t address);
  void checkAllocation(std::uint64_t id, std::uint64_t size) const;
  bool consistencyTest() const;
  static std::uint64_t toAddress(void* address);

  void dump(XbStreamWriteASCIIT<CString>& stream) override;

  CAddressMap<SAllocData> m_Allocations;
  bool m_bInitializeAtConstruction;  // kept, never read again
  bool m_bRegistered = false;
  bool m_bActive = false;
  std::uint64_t m_uiMallocCount = 0;
  std::uint64_t m_uiFreeCount = 0;
  std::uint64_t m_uiReallocCount = 0;
  std::uint64_t m_uiNextID = 0;
  std::int64_t m_iCurrentAlloc = 0;
  std::int64_t m_iCurrentMax = 0;
  std::uint64_t m_uiObservedID = c_uiObserveOff;
  std::uint64_t m_uiObservedSize = c_uiObserveOff;

  static HeapHooks::CTrackerLock s_CriticalSection;
  // Refers to storage that is never destroyed: allocations during the
  // process's exit still walk the list.
  static XbArray<CHeapTracker*>& s_TrackerList;
  static bool s_bDeactivateGlobal;
  // The only tracker of the list, while the list has one and is not being
  // changed; null otherwise. Written under the lock, read without it.
  static std::atomic<CHeapTracker*> s_pLoneTracker;
  static bool s_bIsHooked;
  // The real functions as the hook engine reported them; null while unhooked.
  static HeapHooks::FnMalloc s_fnRealMalloc;
  static HeapHooks::FnFree s_fnRealFree;
  static HeapHooks::FnRealloc s_fnRealRealloc;
};

}  // namespace TestSuite
