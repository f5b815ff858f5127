// Opening a report: the replaceable opener.
#include "report/DocumentOpener.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

#include "foundation_TestFiles.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;

TEST(DocumentOpenerTest, ReplacedOpenerReceivesThePathAndCanBeRestored) {
  std::vector<CString> opened;
  const auto previous = SetDocumentOpener([&opened](const CString& path) { opened.push_back(path); });
  EXPECT_FALSE(previous);  // the default
  OpenDocument(L"/tmp/report.html");
  OpenDocument(L"second.html");
  const auto mine = SetDocumentOpener(nullptr);
  EXPECT_TRUE(mine);
  ASSERT_EQ(opened.size(), 2u);
  EXPECT_EQ(opened[0], L"/tmp/report.html");
  EXPECT_EQ(opened[1], L"second.html");
}

// A directory on PATH whose "xdg-open" only notes the path it was given in
// the file "opened" beside it. Without `withSetsid` the directory is all
// of PATH, so the starter "setsid" cannot be found.
class CFakeDesktop {
 public:
  explicit CFakeDesktop(bool withSetsid) : m_path("PATH", withSetsid ? m_dir / "" + ":/usr/bin:/bin" : m_dir / "") {
    const std::string script = m_dir / "xdg-open";
    FoundationTest::WriteBytes(script, "#!/bin/sh\nprintf '%s' \"$1\" > '" + (m_dir / "opened") + "'\n");
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
  }
  std::string Opened() const { return FoundationTest::ReadBytes(m_dir / "opened"); }
  // Waits for the detached viewer to note its path, at most `seconds`.
  std::string WaitForOpened(int seconds) const {
    for (int i = 0; i < seconds * 50 && Opened().empty(); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return Opened();
  }

 private:
  FoundationTest::CScratchDirectory m_dir;
  FoundationTest::CScopedEnvironment m_path;
};

TEST(DocumentOpenerTest, DefaultOpenerStartsTheViewerWithThePath) {
  const CFakeDesktop desktop(true);
  OpenDocument(L"/data/report.html");
  EXPECT_EQ(desktop.WaitForOpened(30), "/data/report.html");
}

TEST(DocumentOpenerTest, DefaultOpenerThatCannotStartDoesNothing) {
  std::vector<CString> replaced;
  SetDocumentOpener([&replaced](const CString& path) { replaced.push_back(path); });
  SetDocumentOpener(nullptr);
  const CFakeDesktop desktop(false);
  OpenDocument(L"/nonexistent/report.html");
  EXPECT_TRUE(replaced.empty());
  EXPECT_EQ(desktop.Opened(), "");
}

}  // namespace
