// Opening a report: the replaceable opener.
#include "report/DocumentOpener.h"

#include <gtest/gtest.h>

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

TEST(DocumentOpenerTest, DefaultOpenerThatCannotStartDoesNothing) {
  const FoundationTest::CScopedEnvironment path("PATH", "/nonexistent-zo-path");
  EXPECT_NO_THROW(OpenDocument(L"/nonexistent/report.html"));
}

}  // namespace
