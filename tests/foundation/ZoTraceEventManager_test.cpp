// ZoTraceEventManager: trace events are kept until a flush hands them to
// the sink, in the order they were recorded, and are then forgotten.
#include "foundation/ZoTraceEventManager.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/XbDateTime.h"
#include "foundation/XbSingleton.h"

namespace {

using Events = std::vector<ZoTraceEventManager::SEvent>;

// A sink that appends what it is handed to `received`.
ZoTraceEventManager::Sink collector(Events& received, int& calls) {
  return [&received, &calls](const XbArray<ZoTraceEventManager::SEvent>& events) {
    ++calls;
    for (const ZoTraceEventManager::SEvent& event : events) received.push_back(event);
  };
}

TEST(ZoTraceEventManager, FlushHandsTheEventsToTheSinkInOrderAndForgetsThem) {
  ZoTraceEventManager manager;
  Events received;
  int calls = 0;
  manager.SetSink(collector(received, calls));
  const std::uint64_t before = XbDateTime::Now().GetValue();
  manager.Record(L"open");
  manager.Record(L"close");
  const std::uint64_t after = XbDateTime::Now().GetValue();
  EXPECT_EQ(manager.GetPendingCount(), 2u);
  manager.Flush();
  EXPECT_EQ(calls, 1);
  ASSERT_EQ(received.size(), 2u);
  EXPECT_EQ(received[0].sName, CString(L"open"));
  EXPECT_EQ(received[1].sName, CString(L"close"));
  EXPECT_LE(before, received[0].uiTimestampMicroseconds);
  EXPECT_LE(received[0].uiTimestampMicroseconds, received[1].uiTimestampMicroseconds);
  EXPECT_LE(received[1].uiTimestampMicroseconds, after);
  EXPECT_EQ(manager.GetPendingCount(), 0u);
}

TEST(ZoTraceEventManager, NothingToFlushDoesNotCallTheSink) {
  ZoTraceEventManager manager;
  Events received;
  int calls = 0;
  manager.SetSink(collector(received, calls));
  manager.Flush();
  EXPECT_EQ(calls, 0);
}

TEST(ZoTraceEventManager, WithoutASinkAFlushDropsTheEvents) {
  ZoTraceEventManager manager;
  manager.Record(L"lost");
  manager.Flush();
  EXPECT_EQ(manager.GetPendingCount(), 0u);
  Events received;
  int calls = 0;
  manager.SetSink(collector(received, calls));
  manager.Flush();
  EXPECT_EQ(calls, 0);
}

TEST(ZoTraceEventManager, PreallocationKeepsThePendingEventsOfTheProcessWideManager) {
  ZoTraceEventManager& manager = XbSingleton<ZoTraceEventManager>::GetInstance();
  manager.SetSink(nullptr);
  manager.Flush();
  manager.Record(L"kept");
  ZoTraceEventManager::PreallocateStaticData();
  EXPECT_EQ(manager.GetPendingCount(), 1u);
  manager.Flush();
}

}  // namespace
