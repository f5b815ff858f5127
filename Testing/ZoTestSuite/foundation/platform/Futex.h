// Futex: a thread's wait on a 32-bit word until another thread wakes it,
// and whether the process has ever had a second thread; what a lock that
// must neither allocate nor run a constructor needs of the system.
#pragma once

#include <atomic>
#include <cstdint>

namespace ZoPlatform::Futex {

// Sleeps while `word` holds `expected`. May return early (a wake-up, a
// signal, a word that changed before the sleep); the caller looks again.
void Wait(std::atomic<std::uint32_t>& word, std::uint32_t expected) noexcept;
// Wakes one thread that sleeps on `word`, if there is one.
void WakeOne(std::atomic<std::uint32_t>& word) noexcept;
// Wakes every thread that sleeps on `word`.
void WakeAll(std::atomic<std::uint32_t>& word) noexcept;

// A byte that is nonzero while no second thread has ever been started in
// this process. Once zero it stays zero for good, so a nonzero value means
// that no other thread can be holding or awaiting anything. The pointer is
// constant-initialised, valid before any constructor has run, and the byte
// is the same for the life of the process: it is read without a call.
extern const volatile char* const g_pSingleThreadedFlag;

}  // namespace ZoPlatform::Futex
