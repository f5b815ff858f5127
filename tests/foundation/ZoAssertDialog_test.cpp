#include "foundation/ZoAssertDialog.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>

namespace {

// Puts the switch back as it was when the test began.
class CRestoreAssertDialog {
 public:
  CRestoreAssertDialog() : m_bWasEnabled(ZoAssertDialog::IsEnabled()) {}
  ~CRestoreAssertDialog() { ZoAssertDialog::Enable(m_bWasEnabled); }

 private:
  bool m_bWasEnabled;
};

}  // namespace

TEST(ZoAssertDialog, IsEnabledAtStart) {
  // A fresh process: the death test runs this test again in a new program.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::_Exit(ZoAssertDialog::IsEnabled() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(ZoAssertDialog, EnableAndDisableSwitchTheFlag) {
  const CRestoreAssertDialog restore;
  ZoAssertDialog::Disable();
  EXPECT_FALSE(ZoAssertDialog::IsEnabled());
  ZoAssertDialog::Enable();
  EXPECT_TRUE(ZoAssertDialog::IsEnabled());
  ZoAssertDialog::Enable(false);
  EXPECT_FALSE(ZoAssertDialog::IsEnabled());
  ZoAssertDialog::Enable(true);
  EXPECT_TRUE(ZoAssertDialog::IsEnabled());
}

TEST(ZoAssertDialog, DisabledAFailedAssertionPrintsAndGoesOn) {
  const CRestoreAssertDialog restore;
  ZoAssertDialog::Disable();
  int reached = 0;
  testing::internal::CaptureStderr();
  ZO_ASSERT(1 + 1 == 3);
  ++reached;
  const std::string printed = testing::internal::GetCapturedStderr();
  EXPECT_EQ(reached, 1);
  EXPECT_NE(printed.find("Assertion failed: 1 + 1 == 3"), std::string::npos) << printed;
  EXPECT_NE(printed.find("ZoAssertDialog_test.cpp"), std::string::npos) << printed;
  EXPECT_EQ(printed.back(), '\n');
}

TEST(ZoAssertDialog, AHoldingAssertionDoesNothing) {
  const CRestoreAssertDialog restore;
  ZoAssertDialog::Enable();
  int evaluated = 0;
  testing::internal::CaptureStderr();
  ZO_ASSERT(++evaluated == 1);  // the condition is evaluated once
  if (evaluated == 1) ZO_ASSERT(true);
  else ZO_ASSERT(false);  // one statement
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(evaluated, 1);
}

TEST(ZoAssertDialog, EnabledAFailedAssertionRaisesSigtrap) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ZoAssertDialog::Enable();
        ZO_ASSERT(2 < 1);
        std::_Exit(0);  // not reached
      },
      testing::KilledBySignal(SIGTRAP), "Assertion failed: 2 < 1");
}

TEST(ZoAssertDialog, DisabledInAnotherProcessItGoesOnToTheEnd) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ZoAssertDialog::Disable();
        ZO_ASSERT(2 < 1);
        std::_Exit(7);
      },
      testing::ExitedWithCode(7), "Assertion failed: 2 < 1");
}
