// ZoTraceEventManager: a process-wide recorder of trace events that test
// code may emit; the case runner flushes it after every case.
#pragma once

#include <cstdint>
#include <functional>

#include "CString.h"
#include "XbArray.h"
#include "XbCriticalSection.h"

class ZoTraceEventManager {
 public:
  struct SEvent {
    CString sName;
    std::uint64_t uiTimestampMicroseconds = 0;
  };
  using Sink = std::function<void(const XbArray<SEvent>&)>;

  void Record(const wchar_t* name);
  // Hands the recorded events to the sink (if any) and forgets them.
  void Flush();
  void SetSink(Sink sink);
  unsigned int GetPendingCount();
  // Makes the event buffer exist before a measured case needs it.
  static void PreallocateStaticData();

 private:
  XbCriticalSection m_lock;
  XbArray<SEvent> m_events;
  Sink m_sink;
};
