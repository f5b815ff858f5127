// Build information: reading the resource texts, the build's own
// source-control record, and the per-user directory.
#include "services/BuildInformation.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "foundation_TestFiles.h"

namespace {

using namespace TestSuite;

const char* const c_pscmText =
    "WorkspacePath: /src/zo\r\nServer: ssh://vcs.example/zo.git\r\nRepository: zo\r\nChangeset: 42\r\n"
    "Branch: main\r\nChangesetAuthor: Anna M\xC3\xBCller\r\n";

TEST(BuildInformationTest, SourceControlTextFillsEveryField) {
  const auto info = ParsePscmInfo(c_pscmText);
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->WorkspacePath, L"/src/zo");
  EXPECT_EQ(info->Server, L"ssh://vcs.example/zo.git");
  EXPECT_EQ(info->Repository, L"zo");
  EXPECT_EQ(info->Changeset, L"42");
  EXPECT_EQ(info->Branch, L"main");
  EXPECT_EQ(info->ChangesetAuthor, L"Anna Müller");
}

TEST(BuildInformationTest, WorkingCopyTextFillsEveryFieldWithKeysOfSeveralWords) {
  const auto info = ParseSvnInfo(
      "Path: .\nWorking Copy Root Path: C:\\src\nURL: svn://host/trunk\nRepository Root: svn://host\n"
      "Revision: 100\nLast Changed Author: ben\nLast Changed Rev: 99\n"
      "Last Changed Date: 2021-05-03 10:00:00 +0200\nNode Kind: directory\n");
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->Path, L".");
  EXPECT_EQ(info->WorkingCopyRootPath, L"C:\\src");
  EXPECT_EQ(info->URL, L"svn://host/trunk");
  EXPECT_EQ(info->RepositoryRoot, L"svn://host");
  EXPECT_EQ(info->Revision, L"100");
  EXPECT_EQ(info->LastChangedAuthor, L"ben");
  EXPECT_EQ(info->LastChangedRev, L"99");
  EXPECT_EQ(info->LastChangedDate, L"2021-05-03 10:00:00 +0200");
}

TEST(BuildInformationTest, LineWithoutColonAloneGivesARecordWithEmptyFields) {
  const auto pscm = ParsePscmInfo("no colon here");
  ASSERT_NE(pscm, nullptr);
  EXPECT_TRUE(pscm->Server.IsEmpty() && pscm->Repository.IsEmpty() && pscm->Branch.IsEmpty() &&
              pscm->Changeset.IsEmpty() && pscm->ChangesetAuthor.IsEmpty() && pscm->WorkspacePath.IsEmpty());
  const auto svn = ParseSvnInfo("no colon here\r\n");
  ASSERT_NE(svn, nullptr);
  EXPECT_TRUE(svn->URL.IsEmpty() && svn->Revision.IsEmpty());
}

TEST(BuildInformationTest, FirstColonSplitsAndTheValueKeepsItsColons) {
  const auto info = ParsePscmInfo("Server:https://host:8080/repo\r\n");
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->Server, L"https://host:8080/repo");
}

TEST(BuildInformationTest, BlanksAroundAValueGoAndBlanksInsideStay) {
  const auto info = ParsePscmInfo("ChangesetAuthor: \t Anna  Maria Schmidt \t\r\n");
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->ChangesetAuthor, L"Anna  Maria Schmidt");
}

TEST(BuildInformationTest, KeysAreCaseSensitive) {
  const auto info = ParsePscmInfo("branch: main\r\nCHANGESET: 5\r\n");
  ASSERT_NE(info, nullptr);
  EXPECT_TRUE(info->Branch.IsEmpty());
  EXPECT_TRUE(info->Changeset.IsEmpty());
}

TEST(BuildInformationTest, KeyWithATrailingBlankIsNoKey) {
  const auto info = ParsePscmInfo("Branch : main\r\n Changeset: 5\r\n");
  ASSERT_NE(info, nullptr);
  EXPECT_TRUE(info->Branch.IsEmpty());
  EXPECT_TRUE(info->Changeset.IsEmpty());
}

TEST(BuildInformationTest, EmptyTextGivesNoRecord) {
  EXPECT_EQ(ParsePscmInfo(""), nullptr);
  EXPECT_EQ(ParseSvnInfo(""), nullptr);
}

TEST(BuildInformationTest, LastValueOfAKeyStandsAndUnknownKeysAreIgnored) {
  const auto info = ParsePscmInfo("Changeset: 1\r\nColour: blue\r\nChangeset: 2\r\n");
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->Changeset, L"2");
}

TEST(BuildInformationTest, MissingResourceIsEmptyAndThisBuildHasNoWorkingCopyInformation) {
  EXPECT_TRUE(LoadTextResource(L"IDR_NOTHING", L"PSCMINFOFILE").empty());
  EXPECT_TRUE(LoadTextResource(L"IDR_PSCMINFO", L"CSSFILE").empty());
  EXPECT_TRUE(LoadTextResource(L"IDR_SVNINFO", L"SVNINFOFILE").empty());
  EXPECT_EQ(GetSvnInfo(), nullptr);
  EXPECT_FALSE(LoadTextResource(L"IDR_HTML_REPORT_CSS", L"CSSFILE").empty());
}

TEST(BuildInformationTest, BuildFromAGitCheckoutCarriesItsSourceControlRecord) {
  const std::filesystem::path source(ZO_SOURCE_DIR);
  const auto info = GetPscmInfo();
  if (!std::filesystem::exists(source / ".git")) {
    EXPECT_EQ(info, nullptr) << "built outside a git checkout";
    return;
  }
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(std::filesystem::path(info->WorkspacePath.ToUtf8()), std::filesystem::canonical(source));
  EXPECT_EQ(info->Repository.ToUtf8(), std::filesystem::canonical(source).filename().string());
  ASSERT_FALSE(info->Changeset.IsEmpty());
  EXPECT_EQ(info->Changeset.Str().find_first_not_of(L"0123456789"), std::wstring::npos);
  EXPECT_GT(std::wcstoll(info->Changeset.GetString(), nullptr, 10), 0);
  EXPECT_FALSE(info->Branch.IsEmpty());
  const std::string text = LoadTextResource(L"IDR_PSCMINFO", L"PSCMINFOFILE");
  EXPECT_EQ(text.rfind("WorkspacePath: ", 0), 0u);
  EXPECT_NE(text.find("\r\nServer:"), std::string::npos);
  EXPECT_NE(text.find("\r\nChangesetAuthor: "), std::string::npos);
}

TEST(BuildInformationTest, LocalDirectoryHasTwoLevelsMadeOnDemand) {
  TempDirectory directory;
  const FoundationTest::CScopedEnvironment data("XDG_DATA_HOME", directory.Path().ToUtf8());
  const CString local = GetLocalTestSuiteDir();
  EXPECT_EQ(local, directory.Path() + L"ZoTestSuite/Orvane/");
  EXPECT_TRUE(ZoFileSystem::IsDirectory(local));
  EXPECT_EQ(GetLocalTestSuiteDir(), local);  // an existing directory is fine
}

TEST(BuildInformationTest, LocalDirectoryIsReturnedEvenIfItCannotBeMade) {
  TempDirectory directory;
  const CString missing = directory / L"missing/parent/";
  const FoundationTest::CScopedEnvironment data("XDG_DATA_HOME", missing.ToUtf8());
  EXPECT_EQ(GetLocalTestSuiteDir(), missing + L"ZoTestSuite/Orvane/");
  EXPECT_FALSE(ZoFileSystem::Exists(missing));
}

}  // namespace
