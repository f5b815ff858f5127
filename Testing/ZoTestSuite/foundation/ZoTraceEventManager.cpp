// ZoTraceEventManager: the process-wide recorder of trace events.
#include "ZoTraceEventManager.h"

#include "XbDateTime.h"
#include "XbSingleton.h"

void ZoTraceEventManager::Record(const wchar_t* name) {
  XbScopedLock lock(m_lock);
  m_events.Add(SEvent{CString(name), XbDateTime::Now().GetValue()});
}

void ZoTraceEventManager::Flush() {
  XbArray<SEvent> events;
  Sink sink;
  {
    XbScopedLock lock(m_lock);
    events.Std().swap(m_events.Std());
    sink = m_sink;
  }
  if (sink && !events.IsEmpty()) sink(events);
}

void ZoTraceEventManager::SetSink(Sink sink) {
  XbScopedLock lock(m_lock);
  m_sink = std::move(sink);
}

unsigned int ZoTraceEventManager::GetPendingCount() {
  XbScopedLock lock(m_lock);
  return m_events.GetCount();
}

void ZoTraceEventManager::PreallocateStaticData() {
  auto& manager = XbSingleton<ZoTraceEventManager>::GetInstance();
  XbScopedLock lock(manager.m_lock);
  manager.m_events.Reserve(256);
}
