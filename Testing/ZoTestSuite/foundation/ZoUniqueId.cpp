// ZoUniqueIdT: the texts unique among the processes of the machine.
#include "ZoUniqueId.h"

#include <atomic>
#include <cstdint>
#include <random>

#include "platform/System.h"

namespace {

std::atomic<std::uint32_t> s_counter{0};

// Each thread draws from its own generator, seeded once from the system's
// entropy source.
std::uint64_t randomBits() {
  thread_local std::mt19937_64 generator = [] {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device()};
    return std::mt19937_64(seed);
  }();
  return generator();
}

}  // namespace

template <>
CString ZoUniqueIdT<CString>::GetUniqueID() {
  const std::uint32_t counter = s_counter.fetch_add(1, std::memory_order_relaxed);
  return FormatString(L"%08X%08X%016I64X", ZoPlatform::System::GetProcessId(), counter, randomBits());
}

std::uint32_t GetUniqueIdProcessId(const CString& id) {
  if (id.GetLength() < 8) return 0;
  std::uint32_t pid = 0;
  for (int i = 0; i < 8; ++i) {
    const wchar_t ch = id[i];
    const int digit = ch >= L'0' && ch <= L'9' ? ch - L'0' : ch >= L'A' && ch <= L'F' ? ch - L'A' + 10 : -1;
    if (digit < 0) return 0;
    pid = pid * 16 + static_cast<std::uint32_t>(digit);
  }
  return pid;
}
