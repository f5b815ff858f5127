#include "foundation/XbEvent.h"

#include <gtest/gtest.h>

#include <thread>

TEST(XbEvent, ANewEventIsNotSignalled) {
  XbEvent event;
  EXPECT_FALSE(event.Wait(0));
}

TEST(XbEvent, OneWaitTakesTheSignal) {
  XbEvent event;
  event.Set();
  EXPECT_TRUE(event.Wait(0));
  EXPECT_FALSE(event.Wait(0));
}

TEST(XbEvent, SettingASignalledEventReleasesOnlyOneWait) {
  XbEvent event;
  event.Set();
  event.Set();
  EXPECT_TRUE(event.Wait(0));
  EXPECT_FALSE(event.Wait(0));
}

TEST(XbEvent, AnEventCanStartSignalledAndBeReset) {
  XbEvent event(true);
  event.Reset();
  EXPECT_FALSE(event.Wait(0));
  XbEvent signalled(true);
  EXPECT_TRUE(signalled.Wait(0));
}

TEST(XbEvent, AWaitWithoutLimitEndsWhenAnotherThreadSets) {
  XbEvent request, response;
  std::thread partner([&] {
    if (request.Wait()) response.Set();
  });
  request.Set();
  EXPECT_TRUE(response.Wait(XB_INFINITE));
  partner.join();
  EXPECT_FALSE(request.Wait(0));
}
