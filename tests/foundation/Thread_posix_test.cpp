#include <gtest/gtest.h>

#include <thread>

#include "foundation/platform/Thread.h"

namespace {

// The name a new thread has after naming itself `name`.
std::string nameAfterSetting(const std::string& name) {
  std::string seen;
  std::thread([&] {
    ZoPlatform::Thread::SetCurrentName(name);
    seen = ZoPlatform::Thread::GetCurrentName();
  }).join();
  return seen;
}

}  // namespace

TEST(Thread, AThreadCarriesTheNameItGivesItself) { EXPECT_EQ(nameAfterSetting("ApiWorker"), "ApiWorker"); }

TEST(Thread, LongNamesAreCutToFifteenBytes) {
  EXPECT_EQ(nameAfterSetting("TestSuite::Run::CWorkerThread"), "TestSuite::Run:");
}

TEST(Thread, ANameIsNeverCutInsideACharacter) {
  // Fourteen letters and a two-byte character: the character does not fit.
  EXPECT_EQ(nameAfterSetting("abcdefghijklmn\xC3\xA4"), "abcdefghijklmn");
}
