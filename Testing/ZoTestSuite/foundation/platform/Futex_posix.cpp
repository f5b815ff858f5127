// Futex on Linux: the futex system call on a private word, and glibc's flag
// of a process that never had a second thread.
#include <limits.h>
#include <linux/futex.h>
#include <sys/single_threaded.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "Futex.h"

namespace ZoPlatform::Futex {

namespace {

// std::atomic<std::uint32_t> is a plain 32-bit word: the kernel may wait on it.
static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));

std::uint32_t* wordOf(std::atomic<std::uint32_t>& word) { return reinterpret_cast<std::uint32_t*>(&word); }

}  // namespace

void Wait(std::atomic<std::uint32_t>& word, std::uint32_t expected) noexcept {
  ::syscall(SYS_futex, wordOf(word), FUTEX_WAIT_PRIVATE, expected, nullptr, nullptr, 0);
}

void WakeOne(std::atomic<std::uint32_t>& word) noexcept {
  ::syscall(SYS_futex, wordOf(word), FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

void WakeAll(std::atomic<std::uint32_t>& word) noexcept {
  ::syscall(SYS_futex, wordOf(word), FUTEX_WAKE_PRIVATE, INT_MAX, nullptr, nullptr, 0);
}

constinit const volatile char* const g_pSingleThreadedFlag = &__libc_single_threaded;

}  // namespace ZoPlatform::Futex
