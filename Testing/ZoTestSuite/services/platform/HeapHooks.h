// HeapHooks: the process-wide interception of malloc, free and realloc that
// feeds the heap tracker, and the lock that serialises the tracker.
//
// The library itself defines malloc, free and realloc. Each calls the C
// library's real function first and then, while its hook is enabled, the
// observer set for it. Hooks are switched by one atomic word, so while they
// are off an allocation costs one atomic load more than the real function.
// calloc, memalign and the like are not intercepted. Builds whose sanitizer
// brings its own allocator define no replacements; IsAvailable() then says
// false and no hook can be created.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/XbReentrantLock.h"

namespace TestSuite::HeapHooks {

enum class EFunction { Malloc, Free, Realloc };

// The real allocator entry points.
using FnMalloc = void* (*)(std::size_t size);
using FnFree = void (*)(void* address);
using FnRealloc = void* (*)(void* address, std::size_t size);

// What a replacement calls after the real function has returned.
using FnMallocObserver = void (*)(void* address, std::uint64_t size);
using FnFreeObserver = void (*)(void* address);
using FnReallocObserver = void (*)(void* oldAddress, void* newAddress, std::uint64_t size);

// Whether this build intercepts the allocator at all.
bool IsAvailable() noexcept;

// The hook engine. Every operation gives 0 on success and something else on
// failure. Initialize is needed once before hooks are created; a second call
// reports that it was done. Uninitialize disables every hook and forgets the
// observers; Initialize may follow again.
int Initialize() noexcept;
int Uninitialize() noexcept;

// Sets the observer of one function and yields the real entry point. The
// interception does not start before EnableHook.
int CreateHook(FnMallocObserver observer, FnMalloc* original) noexcept;
int CreateHook(FnFreeObserver observer, FnFree* original) noexcept;
int CreateHook(FnReallocObserver observer, FnRealloc* original) noexcept;

// From EnableHook on, every thread's calls of the function reach the
// observer; DisableHook ends that. Both fail for a hook never created.
int EnableHook(EFunction target) noexcept;
int DisableHook(EFunction target) noexcept;

// The one process-wide re-entrant lock of the heap tracker. It is usable
// before any static constructor has run and never allocates, because every
// intercepted allocation takes it. fork waits until the lock is free and the
// child starts with it free.
extern constinit XbReentrantLock g_TrackerLock;

// A handle of g_TrackerLock: all handles are the same lock, and the handle
// itself holds nothing. Inline, so that the allocation path calls nothing to
// take it. Meets BasicLockable.
class CTrackerLock {
 public:
  void Lock() noexcept { g_TrackerLock.Lock(); }
  void Unlock() noexcept { g_TrackerLock.Unlock(); }
  void lock() noexcept { Lock(); }
  void unlock() noexcept { Unlock(); }
};

// Holds g_TrackerLock for its scope, except while the process has only ever
// had one thread: then nobody can contend for it, and taking it would only
// cost time on every allocation. Code in such a scope must not start a
// thread.
class CTrackerScope {
 public:
  CTrackerScope() noexcept : m_bTaken(!XbReentrantLock::IsProcessSingleThreaded()) {
    if (m_bTaken) g_TrackerLock.LockAmongThreads();
  }
  ~CTrackerScope() {
    if (m_bTaken) g_TrackerLock.UnlockAmongThreads();
  }
  CTrackerScope(const CTrackerScope&) = delete;
  CTrackerScope& operator=(const CTrackerScope&) = delete;

 private:
  bool m_bTaken;
};

}  // namespace TestSuite::HeapHooks
