// ZoTimeTracker: the named, accumulated timings of test code.
#include "ZoTimeTracker.h"

#include <cwchar>

namespace {

XbArray<ZoTimeTracker::SEntry>& threadTable() {
  thread_local XbArray<ZoTimeTracker::SEntry> table;
  return table;
}

}  // namespace

void ZoTimeTracker::Add(const wchar_t* name, double seconds) {
  auto& table = threadTable();
  for (auto& entry : table) {
    if (entry.sName == name) {
      ++entry.uiCount;
      entry.dSeconds += seconds;
      return;
    }
  }
  table.Add(SEntry{CString(name), 1, seconds});
}

XbArray<ZoTimeTracker::SEntry> ZoTimeTracker::GetEntries() { return threadTable(); }

void ZoTimeTracker::Clear() { threadTable().RemoveAll(); }

void ZoTimeTracker::PreallocateStaticData() { threadTable().Reserve(64); }
