// XbReentrantLock: a re-entrant lock that is usable before any constructor
// has run and never allocates, for code that runs inside the allocator.
//
// The owner is an atomic thread tag beside a depth that only the owner
// touches. A thread that finds the lock taken spins briefly and then sleeps
// on a futex; the last Unlock wakes one sleeper. While the process has never
// had a second thread, nobody can contend, and the lock takes no atomic
// read-modify-write at all. Not fair: a thread that keeps re-taking the lock
// may overtake a sleeper. Meets Lockable, so std::lock_guard takes it.
#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/platform/Futex.h"

class XbReentrantLock {
 public:
  constexpr XbReentrantLock() = default;
  XbReentrantLock(const XbReentrantLock&) = delete;
  XbReentrantLock& operator=(const XbReentrantLock&) = delete;

  void Lock() noexcept { acquire(IsProcessSingleThreaded()); }

  // Only the owner unlocks, once per Lock or successful TryLock. A single
  // thread now means that nobody sleeps on the word, however it was taken;
  // a thread that came since may sleep on it.
  void Unlock() noexcept { release(IsProcessSingleThreaded()); }

  // Lock and Unlock for a caller that has just seen the process with more
  // than one thread: the same, without looking again.
  void LockAmongThreads() noexcept { acquire(false); }
  void UnlockAmongThreads() noexcept { release(false); }

  bool TryLock() noexcept;

  // A brief hold without re-entry, for a caller among threads that calls
  // nothing while it holds: one compare-and-swap and no owner bookkeeping.
  // False where anyone holds the lock, this thread included; the caller then
  // takes the lock the re-entrant way. Meanwhile the lock counts as held by
  // no thread in particular, and ends with ReleaseHold.
  bool TryHold() noexcept {
    std::uint32_t expected = eFree;
    return m_state.compare_exchange_strong(expected, eLocked, std::memory_order_acquire, std::memory_order_relaxed);
  }
  void ReleaseHold() noexcept {
    if (m_state.exchange(eFree, std::memory_order_release) == eContended) wakeOne();
  }

  // Whether the calling thread holds the lock.
  bool IsHeldByCurrentThread() const noexcept { return m_owner.load(std::memory_order_relaxed) == currentThreadTag(); }

  // In the child of a fork: the lock is free, whoever held it in the
  // parent, since only the forking thread lives on.
  void ResetAfterFork() noexcept {
    m_owner.store(0, std::memory_order_relaxed);
    m_uiDepth = 0;
    m_state.store(eFree, std::memory_order_relaxed);
  }

  void lock() noexcept { Lock(); }
  void unlock() noexcept { Unlock(); }
  bool try_lock() noexcept { return TryLock(); }

  // Whether the process has only ever had one thread; calls nothing.
  static bool IsProcessSingleThreaded() noexcept { return *ZoPlatform::Futex::g_pSingleThreadedFlag != 0; }

 private:
  enum : std::uint32_t { eFree = 0, eLocked = 1, eContended = 2 };

  // `alone`: the process has only ever had one thread.
  void acquire(bool alone) noexcept {
    const std::uintptr_t self = currentThreadTag();
    if (m_owner.load(std::memory_order_relaxed) == self) {
      ++m_uiDepth;
      return;
    }
    // With a single thread the word can only be free here: this thread does
    // not hold it (else it had counted up above) and nobody else exists.
    if (alone) {
      m_state.store(eLocked, std::memory_order_relaxed);
    } else {
      std::uint32_t expected = eFree;
      if (!m_state.compare_exchange_strong(expected, eLocked, std::memory_order_acquire, std::memory_order_relaxed))
        acquireContended();
    }
    m_owner.store(self, std::memory_order_relaxed);
    m_uiDepth = 1;
  }

  void release(bool alone) noexcept {
    if (--m_uiDepth != 0) return;
    m_owner.store(0, std::memory_order_relaxed);
    if (alone) {
      m_state.store(eFree, std::memory_order_release);
      return;
    }
    if (m_state.exchange(eFree, std::memory_order_release) == eContended) wakeOne();
  }

  // The address of a byte of the calling thread's own: never 0, and the
  // same for no two threads that live at the same time.
  static std::uintptr_t currentThreadTag() noexcept {
    static thread_local __attribute__((tls_model("initial-exec"))) char t_cTag;
    return reinterpret_cast<std::uintptr_t>(&t_cTag);
  }

  void acquireContended() noexcept;
  void wakeOne() noexcept;

  std::atomic<std::uint32_t> m_state{eFree};  // eContended: someone may sleep on it
  std::atomic<std::uintptr_t> m_owner{0};     // the owner's tag, 0 when free
  std::uint32_t m_uiDepth = 0;                // touched by the owner only
};
