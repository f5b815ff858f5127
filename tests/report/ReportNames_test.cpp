// Report file names: the revision, the file date, the archive name and the
// default location.
#include "report/ReportNames.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "foundation_TestFiles.h"
#include "report/XmlReportWriter.h"
#include "report_Fixtures.h"
#include "services_COutRecorder.h"

namespace {

using namespace TestSuite;
using namespace TestSuite::Report;
using namespace ReportTest;

SData withChangeset(const wchar_t* changeset) {
  SData data = MakeEmptyReport();
  data.PscmInfo = std::make_shared<SPscmInfo>();
  data.PscmInfo->Changeset = changeset;
  return data;
}

// Points the documents directory at a scratch directory while it lives.
class CDocumentsDirectory {
 public:
  const CString& Path() const { return m_directory.Path(); }

 private:
  TempDirectory m_directory;
  FoundationTest::CScopedEnvironment m_environment{"XDG_DOCUMENTS_DIR", m_directory.Path().ToUtf8()};
};

TEST(ReportNamesTest, MakeFileDateReplacesSeparators) {
  EXPECT_EQ(MakeFileDate(L"2021-05-04 12:34:56"), L"2021.05.04-12.34.56");
  EXPECT_EQ(MakeFileDate(L""), L"");
}

TEST(ReportNamesTest, RevisionComesFromPscmBeforeSvn) {
  SData data = withChangeset(L"4711");
  data.SvnInfo = std::make_shared<SSvnInfo>();
  data.SvnInfo->LastChangedRev = L"12";
  EXPECT_EQ(GetRevision(data), 4711);
  data.PscmInfo.reset();
  EXPECT_EQ(GetRevision(data), 12);
  data.SvnInfo.reset();
  EXPECT_EQ(GetRevision(data), std::nullopt);
}

TEST(ReportNamesTest, RevisionIsReadLikeTheStandardConversion) {
  EXPECT_EQ(GetRevision(withChangeset(L"  42abc")), 42);
  EXPECT_EQ(GetRevision(withChangeset(L"-7")), -7);
  EXPECT_EQ(GetRevision(withChangeset(L"abc")), std::nullopt);
  EXPECT_EQ(GetRevision(withChangeset(L"")), std::nullopt);
  EXPECT_EQ(GetRevision(withChangeset(L"99999999999999999999")), std::nullopt);
}

TEST(ReportNamesTest, ArchiveNameHasRevisionDateAndTag) {
  SData data = withChangeset(L"4711");
  EXPECT_EQ(GetArchiveName(data), CString(L"Report-4711-[2021.05.04-12.34.56]"));
  data.RunTag = L"nightly run";
  EXPECT_EQ(GetArchiveName(data), CString(L"Report-4711-[2021.05.04-12.34.56]-T[nightly run]"));
  EXPECT_EQ(GetArchiveName(MakeEmptyReport()), std::nullopt);
}

TEST(ReportNamesTest, RevisionAboveInt32ShowsOnlyItsLow32Bits) {
  const SData data = withChangeset(L"4294967297");  // 2^32 + 1
  EXPECT_EQ(GetRevision(data), 4294967297LL);
  EXPECT_EQ(GetArchiveName(data), CString(L"Report-1-[2021.05.04-12.34.56]"));
  EXPECT_EQ(GetArchiveName(withChangeset(L"2147483648")), CString(L"Report--2147483648-[2021.05.04-12.34.56]"));
}

TEST(ReportNamesTest, RequestedPathIsUsedAsItStands) {
  EXPECT_EQ(ResolveReportPath(L"out/my.report", withChangeset(L"1"), L"xml"), L"out/my.report");
}

TEST(ReportNamesTest, EmptyRequestWithoutBuildInformationIsNamedAfterTheDate) {
  CDocumentsDirectory documents;
  const CString path = ResolveReportPath(CString(), MakeEmptyReport(), L"xml");
  EXPECT_EQ(path, documents.Path() + L"ZoTestSuite/Reports/Report-[2021.05.04-12.34.56].xml");
  EXPECT_TRUE(ZoFileSystem::IsDirectory(documents.Path() + L"ZoTestSuite/Reports/"));
}

TEST(ReportNamesTest, EmptyRequestWithRevisionIsNamedAfterTheArchiveName) {
  CDocumentsDirectory documents;
  EXPECT_EQ(ResolveReportPath(CString(), withChangeset(L"9"), L"html"),
            documents.Path() + L"ZoTestSuite/Reports/Report-9-[2021.05.04-12.34.56].html");
}

TEST(ReportNamesTest, TagThatIsNoFileNameMakesTheReportUnwritable) {
  CDocumentsDirectory documents;
  SData data = withChangeset(L"9");
  data.RunTag = L"a/b";
  const CString path = ResolveReportPath(CString(), data, L"xml");
  EXPECT_EQ(path, documents.Path() + L"ZoTestSuite/Reports/Report-9-[2021.05.04-12.34.56]-T[a/b].xml");
  COutRecorder recorder;
  WriteXmlReport(path, data);
  EXPECT_EQ(recorder.Text(), L"XML-Report " + path + L" konnte nicht erzeugt werden.\n");
}

}  // namespace
