// HeapHooks on glibc: symbol interposition of malloc, free and realloc, which
// forward to __libc_malloc, __libc_free and __libc_realloc.
#include <pthread.h>

#include <atomic>
#include <type_traits>

#include "services/platform/HeapHooks.h"

// glibc's own entry points, which the replacements forward to.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(std::size_t size) noexcept;
void __libc_free(void* address) noexcept;
void* __libc_realloc(void* address, std::size_t size) noexcept;
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using namespace TestSuite::HeapHooks;

std::atomic<bool> g_bInitialized{false};
std::atomic<bool> g_bForkHandlersSet{false};
// One bit per EFunction; the replacements look at nothing else while a hook is off.
std::atomic<unsigned> g_uiEnabled{0};
std::atomic<FnMallocObserver> g_fnMallocObserver{nullptr};
std::atomic<FnFreeObserver> g_fnFreeObserver{nullptr};
std::atomic<FnReallocObserver> g_fnReallocObserver{nullptr};

constexpr unsigned bitOf(EFunction target) { return 1u << static_cast<unsigned>(target); }

bool isCreated(EFunction target) {
  switch (target) {
    case EFunction::Malloc: return g_fnMallocObserver.load() != nullptr;
    case EFunction::Free: return g_fnFreeObserver.load() != nullptr;
    case EFunction::Realloc: return g_fnReallocObserver.load() != nullptr;
  }
  return false;
}

template <typename TObserver, typename TOriginal>
int createHook(std::atomic<TObserver>& slot, TObserver observer, TOriginal* original,
               std::type_identity_t<TOriginal> real) {
  if (!IsAvailable() || !g_bInitialized.load() || observer == nullptr || original == nullptr) return 1;
  slot.store(observer);
  *original = real;
  return 0;
}

// fork copies the lock as it stands. A child made while another thread held
// it would wait for it forever at its first malloc; so fork waits until the
// lock is free, and the child starts with a new one.
void lockBeforeFork() { g_TrackerLock.Lock(); }
void unlockAfterFork() { g_TrackerLock.Unlock(); }
void renewInChild() { g_TrackerLock.ResetAfterFork(); }

}  // namespace

#ifndef ZO_HEAP_NO_INTERPOSITION

namespace {

bool isEnabled(EFunction target) { return (g_uiEnabled.load(std::memory_order_acquire) & bitOf(target)) != 0; }

}  // namespace

// The replacements. An observer may be cleared between the flag test and the
// call, hence the second test. Observers leave errno alone: nothing they
// call fails short of an exception.
extern "C" __attribute__((visibility("default"))) void* malloc(std::size_t size) noexcept {
  void* result = __libc_malloc(size);
  if (isEnabled(EFunction::Malloc)) {
    if (const FnMallocObserver observer = g_fnMallocObserver.load(std::memory_order_acquire)) {
      observer(result, size);
    }
  }
  return result;
}

extern "C" __attribute__((visibility("default"))) void free(void* address) noexcept {
  __libc_free(address);
  if (isEnabled(EFunction::Free)) {
    if (const FnFreeObserver observer = g_fnFreeObserver.load(std::memory_order_acquire)) { observer(address); }
  }
}

extern "C" __attribute__((visibility("default"))) void* realloc(void* address, std::size_t size) noexcept {
  void* result = __libc_realloc(address, size);
  if (isEnabled(EFunction::Realloc)) {
    if (const FnReallocObserver observer = g_fnReallocObserver.load(std::memory_order_acquire)) {
      observer(address, result, size);
    }
  }
  return result;
}

#endif  // ZO_HEAP_NO_INTERPOSITION

namespace TestSuite::HeapHooks {

bool IsAvailable() noexcept {
#ifdef ZO_HEAP_NO_INTERPOSITION
  return false;
#else
  return true;
#endif
}

int Initialize() noexcept {
  if (g_bInitialized.exchange(true)) return 1;
  if (!g_bForkHandlersSet.exchange(true)) pthread_atfork(&lockBeforeFork, &unlockAfterFork, &renewInChild);
  return 0;
}

int Uninitialize() noexcept {
  if (!g_bInitialized.load()) return 1;
  g_uiEnabled.store(0, std::memory_order_release);
  g_fnMallocObserver.store(nullptr);
  g_fnFreeObserver.store(nullptr);
  g_fnReallocObserver.store(nullptr);
  g_bInitialized.store(false);
  return 0;
}

int CreateHook(FnMallocObserver observer, FnMalloc* original) noexcept {
  return createHook(g_fnMallocObserver, observer, original, &__libc_malloc);
}

int CreateHook(FnFreeObserver observer, FnFree* original) noexcept {
  return createHook(g_fnFreeObserver, observer, original, &__libc_free);
}

int CreateHook(FnReallocObserver observer, FnRealloc* original) noexcept {
  return createHook(g_fnReallocObserver, observer, original, &__libc_realloc);
}

int EnableHook(EFunction target) noexcept {
  if (!isCreated(target)) return 1;
  g_uiEnabled.fetch_or(bitOf(target), std::memory_order_release);
  return 0;
}

int DisableHook(EFunction target) noexcept {
  if (!isCreated(target)) return 1;
  g_uiEnabled.fetch_and(~bitOf(target), std::memory_order_release);
  return 0;
}

// Constant-initialised: valid before the first static constructor, and the
// first malloc of the process may come before any of them.
constinit XbReentrantLock g_TrackerLock;

}  // namespace TestSuite::HeapHooks
