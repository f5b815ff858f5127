// FailureInjection: one count per operation, read before every such call.
#include "FailureInjection.h"

#include <atomic>

namespace ZoPlatform::FailureInjection {

namespace {

constexpr int sc_iOperations = static_cast<int>(EOperation::eDirectoryListing) + 1;

constexpr long long sc_iOff = -1;

// Per operation: off, or the number of calls still spared before all fail.
std::atomic<long long> s_spared[sc_iOperations] = {sc_iOff, sc_iOff, sc_iOff, sc_iOff, sc_iOff};

std::atomic<long long>& spared(EOperation operation) { return s_spared[static_cast<int>(operation)]; }

}  // namespace

void Fail(EOperation operation, unsigned int uiSpared) { spared(operation).store(uiSpared); }
void Clear(EOperation operation) { spared(operation).store(sc_iOff); }

bool ShouldFail(EOperation operation) {
  std::atomic<long long>& left = spared(operation);
  long long value = left.load(std::memory_order_relaxed);
  while (value > 0)
    if (left.compare_exchange_weak(value, value - 1)) return false;
  return value == 0;
}

}  // namespace ZoPlatform::FailureInjection
