// XbReentrantLock: the contended path (the brief spin and the futex sleep).
#include "foundation/XbReentrantLock.h"

#include "foundation/platform/Futex.h"

namespace {

// Rounds of looking before a thread sleeps: about a microsecond, long
// enough for an owner that only counts an allocation.
constexpr int c_iSpinRounds = 100;

// Tells the processor that this is a spin, so that a sibling thread of the core runs.
inline void spinPause() noexcept {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#endif
}

}  // namespace

namespace Futex = ZoPlatform::Futex;

void XbReentrantLock::wakeOne() noexcept { Futex::WakeOne(m_state); }

// Spins a while for a free word, then marks it contended and sleeps until
// it is handed over free. Whoever takes it from the sleep leaves it marked
// contended, since other sleepers may still wait.
void XbReentrantLock::acquireContended() noexcept {
  for (int round = 0; round < c_iSpinRounds; ++round) {
    std::uint32_t expected = eFree;
    if (m_state.load(std::memory_order_relaxed) == eFree &&
        m_state.compare_exchange_weak(expected, eLocked, std::memory_order_acquire, std::memory_order_relaxed))
      return;
    spinPause();
  }
  while (m_state.exchange(eContended, std::memory_order_acquire) != eFree) Futex::Wait(m_state, eContended);
}

bool XbReentrantLock::TryLock() noexcept {
  const std::uintptr_t self = currentThreadTag();
  if (m_owner.load(std::memory_order_relaxed) == self) {
    ++m_uiDepth;
    return true;
  }
  std::uint32_t expected = eFree;
  if (!m_state.compare_exchange_strong(expected, eLocked, std::memory_order_acquire, std::memory_order_relaxed))
    return false;
  m_owner.store(self, std::memory_order_relaxed);
  m_uiDepth = 1;
  return true;
}
