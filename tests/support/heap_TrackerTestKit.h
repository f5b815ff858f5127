// heap_TrackerTestKit: what the heap tracker's tests share: allocator calls
// the compiler cannot drop, the skip for builds without interception, access
// to the tracker's private bookkeeping and readers of its dump.
//
// gtest and the test's own code allocate too, so every measurement is
// bracketed tightly: Activate right before the measured calls, Deactivate
// right after, and the checks only afterwards.
#pragma once

#include <fmt/format.h>
#include <fmt/xchar.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "HeapInterception.h"
#include "foundation/XbStream.h"
#include "services/CHeapTracker.h"
#include "services/platform/HeapHooks.h"

namespace TestSuite {

// Reaches the tracker's private bookkeeping, which has no caller of its own.
class CHeapTrackerTestAccess {
 public:
  static void Track(CHeapTracker& tracker, CHeapTracker::EOperation operation, std::uint64_t oldAddress,
                    std::uint64_t newAddress, std::uint64_t size) {
    tracker.track(operation, reinterpret_cast<void*>(oldAddress), reinterpret_cast<void*>(newAddress), size);
  }
  static bool ConsistencyTest(const CHeapTracker& tracker) { return tracker.consistencyTest(); }
  // Breaks the agreement of counter and map, which no sequence of calls can.
  static void SetCurrentAlloc(CHeapTracker& tracker, std::int64_t bytes) { tracker.m_iCurrentAlloc = bytes; }
};

// Calls through volatile pointers: the compiler can neither drop a
// malloc/free pair nor move a call across Activate or Deactivate.
inline void* (*volatile g_fnMalloc)(std::size_t) = &std::malloc;
inline void (*volatile g_fnFree)(void*) = &std::free;
inline void* (*volatile g_fnRealloc)(void*, std::size_t) = &std::realloc;

inline std::wstring dumpOf(CHeapTracker& tracker) {
  XbStreamWriteASCIIStringT<CString> stream;
  tracker.Dump(stream);
  return stream.GetString().Str();
}

inline std::wstring entryLine(std::uint64_t id, const void* address, std::uint64_t size) {
  return fmt::format(L"ID {}, Address 0x{:016X}, Size {} Bytes.\n", id, reinterpret_cast<std::uintptr_t>(address),
                     size);
}

inline bool endsWith(const std::wstring& text, const std::wstring& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// The ID that the tracker gives its next operation, read from the dump of
// one allocation made for the purpose.
inline std::wstring nextIdPrefix(CHeapTracker& tracker) {
  tracker.Activate();
  void* probe = g_fnMalloc(8);
  tracker.Deactivate();
  const std::wstring text = dumpOf(tracker);
  g_fnFree(probe);
  const std::size_t at = text.rfind(L"ID ");
  return at == std::wstring::npos ? std::wstring() : text.substr(at, text.find(L',', at) - at);
}

}  // namespace TestSuite
