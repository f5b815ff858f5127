// ZoDebugSerializationGeneric: a thread's own output directory wins over
// the process-wide default, and only on that thread.
#include "foundation/ZoDebugSerializationGeneric.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

// Every test starts and ends without directories: a case run on this
// thread before leaves its own directory set.
class ZoDebugSerializationGenericTest : public ::testing::Test {
 protected:
  void SetUp() override { clear(); }
  void TearDown() override { clear(); }
  static void clear() {
    ZoDebugSerializationGeneric::SetThreadLocalOutputDirectory(CString());
    ZoDebugSerializationGeneric::SetDefaultOutputDirectory(CString());
  }
};

TEST_F(ZoDebugSerializationGenericTest, WithoutAThreadDirectoryTheDefaultIsUsed) {
  ZoDebugSerializationGeneric::SetDefaultOutputDirectory(L"/out/default/");
  EXPECT_EQ(ZoDebugSerializationGeneric::GetDefaultOutputDirectory(), CString(L"/out/default/"));
  EXPECT_EQ(ZoDebugSerializationGeneric::GetOutputDirectory(), CString(L"/out/default/"));
}

TEST_F(ZoDebugSerializationGenericTest, TheThreadDirectoryWinsOnItsThreadOnly) {
  ZoDebugSerializationGeneric::SetDefaultOutputDirectory(L"/out/default/");
  ZoDebugSerializationGeneric::SetThreadLocalOutputDirectory(L"/out/case/");
  CString seenByOther;
  std::thread other([&seenByOther] { seenByOther = ZoDebugSerializationGeneric::GetOutputDirectory(); });
  other.join();
  EXPECT_EQ(ZoDebugSerializationGeneric::GetOutputDirectory(), CString(L"/out/case/"));
  EXPECT_EQ(seenByOther, CString(L"/out/default/"));
}

TEST_F(ZoDebugSerializationGenericTest, AnEmptyThreadDirectoryFallsBackToTheDefault) {
  ZoDebugSerializationGeneric::SetDefaultOutputDirectory(L"/out/default/");
  ZoDebugSerializationGeneric::SetThreadLocalOutputDirectory(L"/out/case/");
  ZoDebugSerializationGeneric::SetThreadLocalOutputDirectory(CString());
  EXPECT_EQ(ZoDebugSerializationGeneric::GetOutputDirectory(), CString(L"/out/default/"));
}

TEST_F(ZoDebugSerializationGenericTest, TheDefaultIsSharedByAllThreads) {
  std::thread other([] { ZoDebugSerializationGeneric::SetDefaultOutputDirectory(L"/out/shared/"); });
  other.join();
  EXPECT_EQ(ZoDebugSerializationGeneric::GetOutputDirectory(), CString(L"/out/shared/"));
}

}  // namespace
