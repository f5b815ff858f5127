#include "services/COut.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <locale>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "TempDirectory.h"
#include "foundation/XbException.h"
#include "services_COutRecorder.h"

using TestSuite::COut;

namespace {

// Closes a log stream left open and leaves console and log as a process
// starts: console on, no log path.
void resetChannel() {
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(L"");
  COut::Write(L"");
  COut::SetConsoleOut(true);
}

// A sink of this file that runs a test's action while one is set. Sinks
// can never be removed, so these are made once and stay.
class CActionSink : public COut::ZoCustomOut {
 public:
  std::function<void(const COut&)> fnAction;
  void Output(const COut& out) override {
    if (fnAction) fnAction(out);
  }
};

CActionSink& actionSink(int index) {
  static CActionSink* s_sinks = [] {
    auto* sinks = new CActionSink[3];
    for (int i = 0; i < 3; ++i) COut::AddCustomOut(&sinks[i]);
    return sinks;
  }();
  return s_sinks[index];
}

// Disarms the action sinks at the end of a test, failed or not.
struct SActionSinksGuard {
  SActionSinksGuard() {
    for (int i = 0; i < 3; ++i) actionSink(i);
  }
  ~SActionSinksGuard() {
    for (int i = 0; i < 3; ++i) actionSink(i).fnAction = nullptr;
  }
};

class COutTest : public ::testing::Test {
 protected:
  void SetUp() override { resetChannel(); }
  void TearDown() override { resetChannel(); }
  TempDirectory m_dir;
};

}  // namespace

TEST_F(COutTest, WriteFormatsAndTheFactoryResultPrintsExactlyOnce) {
  COutRecorder recorder;
  COut::Write(L"%d Fälle, %s\n", 3, L"fertig");
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].sText, CString(L"3 Fälle, fertig\n"));
  EXPECT_FALSE(messages[0].bBold);
  EXPECT_FALSE(messages[0].bUnderlined);
  EXPECT_FALSE(messages[0].bHasColor);
}

TEST_F(COutTest, CustomSinksSeeTheDecorations) {
  COutRecorder recorder;
  COut::Write(L"Kopf\n").Bold().Underlined().Color(ZoColorRGBA::c_DARKBLUE);
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_TRUE(messages[0].bBold);
  EXPECT_TRUE(messages[0].bUnderlined);
  EXPECT_TRUE(messages[0].bHasColor);
  EXPECT_EQ(messages[0].color, ZoColorRGBA::c_DARKBLUE);
}

TEST_F(COutTest, ACopyPrintsAgainWithItsOwnDecorations) {
  COutRecorder recorder;
  {
    COut original = COut::Write(L"zweimal\n");  // the factory's result itself
    original.Bold();
    COut copy(original);
    copy.Color(ZoColorRGBA::c_RED);
    EXPECT_TRUE(recorder.Messages().empty());  // nothing goes out before destruction
  }
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 2u);
  // Destroyed in reverse order: the copy first.
  EXPECT_EQ(messages[0].sText, CString(L"zweimal\n"));
  EXPECT_TRUE(messages[0].bBold);
  EXPECT_TRUE(messages[0].bHasColor);
  EXPECT_EQ(messages[0].color, ZoColorRGBA::c_RED);
  EXPECT_EQ(messages[1].sText, CString(L"zweimal\n"));
  EXPECT_TRUE(messages[1].bBold);
  EXPECT_FALSE(messages[1].bHasColor);
}

TEST_F(COutTest, KeepingADecoratedTemporaryCopiesItAndBothPrint) {
  COutRecorder recorder;
  {
    // Bold() gives a reference: the variable is a copy, and the temporary
    // goes out at the end of the statement.
    COut kept = COut::Write(L"doppelt\n").Bold();
    EXPECT_EQ(recorder.Messages().size(), 1u);
  }
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_TRUE(messages[0].bBold);
  EXPECT_TRUE(messages[1].bBold);
  EXPECT_EQ(recorder.Text(), CString(L"doppelt\ndoppelt\n"));
}

TEST_F(COutTest, AssignmentCopiesTextAndAllDecorations) {
  COutRecorder recorder;
  {
    COut target = COut::Write(L"alt\n");
    COut source = COut::Write(L"neu\n");
    source.Underlined().Color(ZoColorRGBA::c_GRAY);
    target = source;
    EXPECT_EQ(target.GetText(), CString(L"neu\n"));
    EXPECT_TRUE(target.IsUnderlined());
    EXPECT_FALSE(target.IsBold());
    EXPECT_TRUE(target.HasColor());
    EXPECT_EQ(target.GetColor(), ZoColorRGBA::c_GRAY);
  }
  EXPECT_EQ(recorder.Text(), CString(L"neu\nneu\n"));  // the old text is gone
}

TEST_F(COutTest, EmptyTextStillPassesThroughAllSinks) {
  const CString log = m_dir / L"leer.log";
  COut::SetLogFileOut(log);
  COutRecorder recorder(false);
  ::testing::internal::CaptureStdout();
  COut::Write(L"");
  const std::string console = ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(console, "");
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_TRUE(messages[0].sText.IsEmpty());
  EXPECT_TRUE(std::filesystem::exists(log.ToUtf8()));  // the log was opened for it
  EXPECT_EQ(TempDirectory::ReadBytes(log), "");
}

TEST(COutDeathTest, WithoutConsoleLogOrCustomSinkNothingHappens) {
  // A fresh process that runs only this test: no custom sink is registered.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        COut::SetConsoleOut(false);
        COut::SetLogFileOut(L"");
        ::testing::internal::CaptureStdout();
        COut::Write(L"niemand hört zu\n");
        const std::string console = ::testing::internal::GetCapturedStdout();
        std::fprintf(stderr, "console=[%s]", console.c_str());
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "console=\\[\\]");
}

TEST_F(COutTest, ConsoleGetsUtf8BytesOfTheText) {
  ::testing::internal::CaptureStdout();
  COut::Write(L"Grüße %s\n", L"€");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Gr\xC3\xBC\xC3\x9F\x65 \xE2\x82\xAC\n");
}

// A line goes to the console in one piece: its beginning waits for its end
// or for Flush (the head of a case before the case runs).
TEST_F(COutTest, TheConsoleGetsALineWhenItEndsOrWhenFlushed) {
  ::testing::internal::CaptureStdout();
  const auto written = [] { return std::filesystem::file_size("/proc/self/fd/1"); };
  COut::Write(L"\tcase... ");
  const auto held = written();
  COut::Flush();
  const auto flushed = written();
  COut::Write(L"OK");
  const auto partial = written();
  COut::Write(L"\n");
  const auto whole = written();
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "\tcase... OK\n");
  EXPECT_EQ(held, 0u);
  EXPECT_EQ(flushed, 9u);
  EXPECT_EQ(partial, 9u);
  EXPECT_EQ(whole, 12u);
}

TEST_F(COutTest, ConsoleOffSilencesOnlyTheConsole) {
  COutRecorder recorder;  // console off
  ::testing::internal::CaptureStdout();
  COut::Write(L"still\n");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(recorder.Text(), CString(L"still\n"));
}

TEST_F(COutTest, BoldAndColorChangeNothingOnConsoleAndLog) {
  const CString plainLog = m_dir / L"plain.log", decoratedLog = m_dir / L"decorated.log";
  COut::SetLogFileOut(plainLog);
  ::testing::internal::CaptureStdout();
  COut::Write(L"Ergebnis %d\n", 42);
  const std::string plainConsole = ::testing::internal::GetCapturedStdout();
  resetChannel();
  COut::SetLogFileOut(decoratedLog);
  ::testing::internal::CaptureStdout();
  COut::Write(L"Ergebnis %d\n", 42).Bold().Underlined().Color(ZoColorRGBA::c_GREEN);
  const std::string decoratedConsole = ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(plainConsole, "Ergebnis 42\n");
  EXPECT_EQ(decoratedConsole, plainConsole);
  EXPECT_EQ(TempDirectory::ReadBytes(plainLog), "Ergebnis 42\n");
  EXPECT_EQ(TempDirectory::ReadBytes(decoratedLog), "Ergebnis 42\n");
}

TEST_F(COutTest, ALiteralPercentSignMustBeDoubled) {
  COutRecorder recorder;
  COut::Write(L"100%% fertig\n");
  EXPECT_EQ(recorder.Text(), CString(L"100% fertig\n"));
  recorder.Clear();
  // "% d" is a conversion that wants an argument: a programming error.
  EXPECT_THROW(COut::Write(L"50% done\n"), XbException);
  EXPECT_TRUE(recorder.Messages().empty());
}

TEST_F(COutTest, ConsoleAndLogTakeTheTextUpToItsFirstNul) {
  const CString log = m_dir / L"nul.log";
  COut::SetLogFileOut(log);
  COutRecorder recorder(false);
  const std::wstring withNul(L"vorn\0hinten", 11);
  ::testing::internal::CaptureStdout();
  COut::Write(L"%s", withNul);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "vorn");
  EXPECT_EQ(TempDirectory::ReadBytes(log), "vorn");
  ASSERT_EQ(recorder.Messages().size(), 1u);
  EXPECT_EQ(recorder.Messages()[0].sText.Str(), withNul);  // custom sinks see all of it
}

TEST_F(COutTest, TheLogIsOpenedByTheFirstMessageNotBySetting) {
  const CString log = m_dir / L"spaet.log";
  TempDirectory::WriteBytes(log, "alter Inhalt\n");
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(log);
  EXPECT_EQ(TempDirectory::ReadBytes(log), "alter Inhalt\n");  // not yet truncated
  COut::Write(L"eins\n");
  COut::Write(L"zwei\n");
  EXPECT_EQ(TempDirectory::ReadBytes(log), "eins\nzwei\n");  // flushed per message
}

TEST_F(COutTest, AnEmptyPathStopsTheLogAndClosesItWithTheNextMessage) {
  const CString log = m_dir / L"a.log";
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(log);
  COut::Write(L"eins\n");
  COut::SetLogFileOut(L"");
  COut::Write(L"nicht im Log\n");
  EXPECT_EQ(TempDirectory::ReadBytes(log), "eins\n");
  // The stream was closed by that message: the same path opens anew and
  // truncates.
  COut::SetLogFileOut(log);
  COut::Write(L"zwei\n");
  EXPECT_EQ(TempDirectory::ReadBytes(log), "zwei\n");
}

TEST_F(COutTest, AnEmptyPathWithoutAMessageInBetweenKeepsTheStreamOpen) {
  const CString log = m_dir / L"a.log";
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(log);
  COut::Write(L"eins\n");
  COut::SetLogFileOut(L"");
  COut::SetLogFileOut(log);
  COut::Write(L"zwei\n");
  EXPECT_EQ(TempDirectory::ReadBytes(log), "eins\nzwei\n");  // no new opening, no truncation
}

TEST_F(COutTest, ASecondPathWhileTheStreamIsOpenIsIgnored) {
  const CString first = m_dir / L"erste.log", second = m_dir / L"zweite.log";
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(first);
  COut::Write(L"eins\n");
  COut::SetLogFileOut(second);
  COut::Write(L"zwei\n");
  EXPECT_EQ(TempDirectory::ReadBytes(first), "eins\nzwei\n");
  EXPECT_FALSE(std::filesystem::exists(second.ToUtf8()));
}

TEST_F(COutTest, ALogThatCannotBeOpenedIsNeverRetried) {
  const CString directory = m_dir / L"fehlt";
  const CString log = directory + L"/x.log";
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(log);
  COutRecorder recorder;
  COut::Write(L"eins\n");
  std::filesystem::create_directory(directory.ToUtf8());
  COut::Write(L"zwei\n");
  EXPECT_FALSE(std::filesystem::exists(log.ToUtf8()));
  // Said once on the other sinks, which go on.
  EXPECT_EQ(recorder.Text(),
            CString(L"eins\nFehler: Log-Datei ") + log + CString(L" konnte nicht geschrieben werden.\nzwei\n"));
}

TEST_F(COutTest, AnUnrepresentableCharacterIsSaidOnceAndSilencesTheLogForTheStreamsLife) {
  const std::locale previous = std::locale::global(std::locale::classic());
  const CString log = m_dir / L"c.log";
  COut::SetLogFileOut(log);
  COutRecorder recorder(false);
  ::testing::internal::CaptureStdout();
  COut::Write(L"vorher\n");
  COut::Write(L"Grüße\n");
  COut::Write(L"nachher\n");
  const std::string console = ::testing::internal::GetCapturedStdout();
  resetChannel();
  std::locale::global(previous);
  const std::string logged = TempDirectory::ReadBytes(log);
  EXPECT_EQ(logged.rfind("vorher\n", 0), 0u);
  EXPECT_EQ(logged.find("nachher"), std::string::npos);
  const CString said = CString(L"Fehler: Log-Datei ") + log + CString(L" konnte nicht geschrieben werden.\n");
  EXPECT_EQ(console, "vorher\nGr\xC3\xBC\xC3\x9F\x65\n" + said.ToUtf8() + "nachher\n");
  EXPECT_EQ(recorder.Text(), CString(L"vorher\nGrüße\n") + said + CString(L"nachher\n"));
}

TEST_F(COutTest, ALogOnAFullDiskIsSaidOnceInRed) {
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(L"/dev/full");
  COutRecorder recorder;
  // More than a stream buffer, so that a write reaches the device.
  COut::Write(L"%s\n", CString(L'x', 70000));
  COut::Write(L"zwei\n");
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 3u);
  EXPECT_EQ(messages[1].sText, CString(L"Fehler: Log-Datei /dev/full konnte nicht geschrieben werden.\n"));
  EXPECT_EQ(messages[1].color, ZoColorRGBA::c_RED);
  EXPECT_EQ(messages[2].sText, CString(L"zwei\n"));
}

TEST_F(COutTest, TheLogNarrowsWithTheGlobalLocale) {
  std::locale utf8;
  try {
    utf8 = std::locale("C.UTF-8");
  } catch (const std::runtime_error&) { GTEST_SKIP() << "no C.UTF-8 locale on this machine"; }
  const std::locale previous = std::locale::global(utf8);
  const CString log = m_dir / L"utf8.log";
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(log);
  COut::Write(L"Grüße\n");
  resetChannel();
  std::locale::global(previous);
  EXPECT_EQ(TempDirectory::ReadBytes(log), "Gr\xC3\xBC\xC3\x9F\x65\n");
}

TEST_F(COutTest, CustomSinksRunInOrderOfRegistrationAndBeforeTheLog) {
  SActionSinksGuard guard;
  const CString log = m_dir / L"order.log";
  COut::SetConsoleOut(false);
  COut::SetLogFileOut(log);
  std::vector<std::string> seen;
  actionSink(0).fnAction = [&](const COut& out) { seen.push_back("0:" + out.GetText().ToUtf8()); };
  actionSink(1).fnAction = [&](const COut& out) {
    seen.push_back("1:" + out.GetText().ToUtf8() + "|log=" + TempDirectory::ReadBytes(log));
  };
  COut::Write(L"a");
  COut::Write(L"b");
  EXPECT_EQ(seen, (std::vector<std::string>{"0:a", "1:a|log=", "0:b", "1:b|log=a"}));
}

TEST_F(COutTest, ASinkAddedDuringOutputSeesTheSameMessage) {
  SActionSinksGuard guard;
  COut::SetConsoleOut(false);
  static CActionSink* s_late = new CActionSink;  // registered once, lives on
  static bool s_added = false;
  std::vector<std::string> seen;
  s_late->fnAction = [&](const COut& out) { seen.push_back("late:" + out.GetText().ToUtf8()); };
  actionSink(2).fnAction = [&](const COut&) {
    if (!s_added) COut::AddCustomOut(s_late);
    s_added = true;
  };
  COut::Write(L"x");
  s_late->fnAction = nullptr;
  EXPECT_EQ(seen, std::vector<std::string>{"late:x"});
}

TEST_F(COutTest, ASinkMayPrintItself) {
  SActionSinksGuard guard;
  COutRecorder recorder;
  actionSink(0).fnAction = [](const COut& out) {
    if (out.GetText() == L"außen\n") COut::Write(L"innen\n");
  };
  COut::Write(L"außen\n");
  const CString text = recorder.Text();
  EXPECT_NE(text.Find(L"außen\n"), -1);
  EXPECT_NE(text.Find(L"innen\n"), -1);
  EXPECT_EQ(recorder.Messages().size(), 2u);
}

TEST_F(COutTest, AnExceptionOfASinkLeavesTheDestructorAndReleasesTheLock) {
  SActionSinksGuard guard;
  COutRecorder recorder;
  actionSink(1).fnAction = [](const COut& out) {
    if (out.GetText() == L"wirf\n") throw std::runtime_error("Senke defekt");
  };
  EXPECT_THROW(COut::Write(L"wirf\n"), std::runtime_error);
  // Another thread can print: the lock was released on the way out.
  auto other = std::async(std::launch::async, [] { COut::Write(L"danach\n"); });
  ASSERT_EQ(other.wait_for(std::chrono::seconds(30)), std::future_status::ready);
  other.get();
  EXPECT_NE(recorder.Text().Find(L"danach\n"), -1);
}

TEST_F(COutTest, MessagesOfManyThreadsStayWholeAndInOneOrderInAllSinks) {
  const CString log = m_dir / L"threads.log";
  COut::SetLogFileOut(log);
  COutRecorder recorder;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([t] {
      for (int i = 0; i < 100; ++i) COut::Write(L"Thread %d Nachricht %03d\n", t, i);
    });
  for (std::thread& thread : threads) thread.join();
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 400u);
  std::string expectedLog;
  for (const auto& message : messages) expectedLog += message.sText.ToUtf8();
  EXPECT_EQ(TempDirectory::ReadBytes(log), expectedLog);
}
