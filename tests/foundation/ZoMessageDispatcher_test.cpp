#include "foundation/ZoMessageDispatcher.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "foundation/XbEvent.h"

TEST(ZoMessageDispatcher, ANewDispatcherDoesNotRunAndRefusesMessages) {
  ZoMessageDispatcher dispatcher;
  EXPECT_FALSE(dispatcher.IsRunning());
  EXPECT_FALSE(dispatcher.Post([] {}));
  EXPECT_TRUE(dispatcher.ShutdownAndWait(0));
}

TEST(ZoMessageDispatcher, MessagesRunInOrderOnTheDispatchersThread) {
  ZoMessageDispatcher dispatcher;
  ASSERT_TRUE(dispatcher.Start());
  EXPECT_TRUE(dispatcher.IsRunning());
  EXPECT_TRUE(dispatcher.Start());  // already running
  std::vector<int> order;
  std::thread::id handler;
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(dispatcher.Post([&, i] {
      order.push_back(i);
      handler = std::this_thread::get_id();
    }));
  }
  EXPECT_TRUE(dispatcher.ShutdownAndWait(XB_INFINITE));
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
  EXPECT_NE(handler, std::this_thread::get_id());
}

TEST(ZoMessageDispatcher, AfterShutdownMessagesAreRefused) {
  ZoMessageDispatcher dispatcher;
  ASSERT_TRUE(dispatcher.Start());
  EXPECT_TRUE(dispatcher.ShutdownAndWait(XB_INFINITE));
  EXPECT_FALSE(dispatcher.IsRunning());
  EXPECT_FALSE(dispatcher.Post([] {}));
}

TEST(ZoMessageDispatcher, AShutdownWithALimitCanEndBeforeTheThread) {
  ZoMessageDispatcher dispatcher;
  ASSERT_TRUE(dispatcher.Start());
  XbEvent started, gate;
  bool lastRan = false;
  dispatcher.Post([&] {
    started.Set();
    gate.Wait();
  });
  dispatcher.Post([&] { lastRan = true; });
  started.Wait();
  EXPECT_FALSE(dispatcher.ShutdownAndWait(0));
  EXPECT_TRUE(dispatcher.IsRunning());
  EXPECT_FALSE(dispatcher.Post([] {}));
  EXPECT_FALSE(dispatcher.Start());  // still shutting down
  gate.Set();
  EXPECT_TRUE(dispatcher.ShutdownAndWait(XB_INFINITE));
  EXPECT_TRUE(lastRan);
}

TEST(ZoMessageDispatcher, ItCanBeStartedAgainAfterShutdown) {
  ZoMessageDispatcher dispatcher;
  ASSERT_TRUE(dispatcher.Start());
  ASSERT_TRUE(dispatcher.ShutdownAndWait(XB_INFINITE));
  ASSERT_TRUE(dispatcher.Start());
  XbEvent handled;
  ASSERT_TRUE(dispatcher.Post([&] { handled.Set(); }));
  EXPECT_TRUE(handled.Wait());
}

TEST(ZoMessageDispatcher, AFailingMessageDoesNotStopTheThread) {
  ZoMessageDispatcher dispatcher;
  ASSERT_TRUE(dispatcher.Start());
  XbEvent handled;
  dispatcher.Post([] { throw std::runtime_error("broken"); });
  dispatcher.Post([&] { handled.Set(); });
  EXPECT_TRUE(handled.Wait());
  EXPECT_TRUE(dispatcher.IsRunning());
}

TEST(ZoMessageDispatcher, TheDestructorHandlesWhatIsQueued) {
  int handled = 0;
  {
    ZoMessageDispatcher dispatcher;
    ASSERT_TRUE(dispatcher.Start());
    for (int i = 0; i < 3; ++i) dispatcher.Post([&] { ++handled; });
  }
  EXPECT_EQ(handled, 3);
}
