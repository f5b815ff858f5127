// The front end's console: what it tells of standard output when that is no
// terminal, and Ctrl-C, whose first press raises the cancel flag and whose
// second ends the process. Each test runs in a process of its own (a death
// test in the "threadsafe" style starts the program afresh), since the
// handler and the flag are process-wide.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "Console.h"

using namespace TestSuite::CLI;

namespace {

class ConsoleTest : public ::testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(ConsoleTest, StandardOutputIntoAFileIsNoTerminalOfEightyColumns) {
  EXPECT_EXIT(
      {
        if (!std::freopen("/dev/null", "w", stdout)) std::_Exit(2);
        std::_Exit(!IsStandardOutputTerminal() && GetTerminalWidth() == 80 ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(ConsoleTest, WithoutCtrlCNothingIsInterrupted) {
  EXPECT_EXIT(
      {
        InstallInterruptHandler();
        std::_Exit(IsInterrupted() ? 1 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(ConsoleTest, TheFirstCtrlCRaisesTheFlagAndSaysHowToStopAtOnce) {
  EXPECT_EXIT(
      {
        InstallInterruptHandler();
        std::raise(SIGINT);
        std::_Exit(IsInterrupted() ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "\nAbbruch angefordert \\(noch einmal Ctrl-C beendet sofort\\)\\.\n");
}

TEST_F(ConsoleTest, TheSecondCtrlCEndsTheProcessWithStatus130) {
  EXPECT_EXIT(
      {
        InstallInterruptHandler();
        std::raise(SIGINT);
        std::raise(SIGINT);
        std::_Exit(1);
      },
      ::testing::ExitedWithCode(130), "");
}

}  // namespace
