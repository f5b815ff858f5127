#include "TerminalSink.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "run_FakeClock.h"

using namespace TestSuite;
using namespace TestSuite::CLI;

namespace {

// All that the sink wrote to `stream`.
std::string contentOf(std::FILE* stream) {
  std::rewind(stream);
  std::string text;
  char buffer[512];
  for (std::size_t length; (length = std::fread(buffer, 1, sizeof buffer, stream)) > 0;) text.append(buffer, length);
  return text;
}

// The messages made here are for the sink under test, not the console.
class TerminalSinkTest : public ::testing::Test {
 protected:
  void SetUp() override { COut::SetConsoleOut(false); }
  void TearDown() override { COut::SetConsoleOut(true); }
};

}  // namespace

TEST_F(TerminalSinkTest, DecorationsBecomeAnsiSequencesEndingBeforeTheLineEnd) {
  EXPECT_EQ(CTerminalSink::Decorate(COut::Write(L"plain\n")), "plain\n");
  EXPECT_EQ(CTerminalSink::Decorate(COut::Write(L"Klasse").Bold()), "\x1b[1mKlasse\x1b[0m");
  EXPECT_EQ(CTerminalSink::Decorate(COut::Write(L"OK\n").Color(ZoColorRGBA::c_GREEN)), "\x1b[32mOK\x1b[0m\n");
  EXPECT_EQ(CTerminalSink::Decorate(COut::Write(L"x").Bold().Underlined().Color(ZoColorRGBA(1, 2, 3))),
            "\x1b[1m\x1b[4m\x1b[38;2;1;2;3mx\x1b[0m");
}

TEST_F(TerminalSinkTest, StatusLineCountsAndEstimates) {
  EXPECT_EQ(CTerminalSink::StatusText(0, 10, 0, 0.0), "[0/10] Fehler: 0  Zeit: 0:00");
  EXPECT_EQ(CTerminalSink::StatusText(5, 10, 1, 30.0), "[5/10] Fehler: 1  Zeit: 0:30  Rest: ~0:30");
  EXPECT_EQ(CTerminalSink::StatusText(10, 10, 2, 3725.0), "[10/10] Fehler: 2  Zeit: 1:02:05");
}

TEST_F(TerminalSinkTest, StatusLineStandsOnlyAtTheStartOfALineAndIsErasedBeforeOutput) {
  std::FILE* stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  {
    CTerminalSink sink(stream);
    sink.BeginRun(2);
    sink.Output(COut::Write(L"\tcase... "));
    sink.CaseFinished(false);  // mid-line: no status line
    sink.Output(COut::Write(L"OK\n"));
    sink.CaseFinished(true);
    sink.EndRun();
  }
  const std::string text = contentOf(stream);
  std::fclose(stream);
  EXPECT_EQ(text.find("\tcase... "), 0u);
  EXPECT_EQ(text.find("\tcase... \x1b[7m"), std::string::npos);
  EXPECT_NE(text.find("OK\n\x1b[7m[1/2] Fehler: 0"), std::string::npos);      // drawn after the line end
  EXPECT_NE(text.find("\r\x1b[K\x1b[7m[2/2] Fehler: 1"), std::string::npos);  // and redrawn
  EXPECT_EQ(text.substr(text.size() - 4), "\r\x1b[K");                        // and erased at the end
}

TEST_F(TerminalSinkTest, StatusLineShowsTheTimeOnItsClockAndEstimatesTheRest) {
  std::FILE* stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  CFakeClock clock;
  clock.Advance(100.0);  // the clock's reading before the run does not count
  {
    CTerminalSink sink(stream, clock);
    sink.BeginRun(4);
    clock.Advance(30.0);
    sink.CaseFinished(false);
    clock.Advance(60.0);
    sink.CaseFinished(true);
    clock.Advance(3600.0);
    sink.CaseFinished(false);
    sink.EndRun();
  }
  const std::string text = contentOf(stream);
  std::fclose(stream);
  EXPECT_NE(text.find("[1/4] Fehler: 0  Zeit: 0:30  Rest: ~1:30"), std::string::npos) << text;
  EXPECT_NE(text.find("[2/4] Fehler: 1  Zeit: 1:30  Rest: ~1:30"), std::string::npos) << text;
  EXPECT_NE(text.find("[3/4] Fehler: 1  Zeit: 1:01:30  Rest: ~20:30"), std::string::npos) << text;
}
