#include "foundation/ZoUnitTestFileBased.h"

#include <gtest/gtest.h>

#include "TempDirectory.h"
#include "foundation/UnitTestFactory.h"

namespace {

class ApiFileTest : public ZoUnitTestFileBased {
 public:
  explicit ApiFileTest(const CString& wildcard) : ZoUnitTestFileBased(wildcard) {}
  using ZoUnitTestFileBased::GetFilePath;

 protected:
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// A registered file-based class, as a test library would write it.
class ApiCsvFileTest : public ZoUnitTestFileBased {
  XB_DECLARE_DYNCREATE(ApiCsvFileTest)
  ApiCsvFileTest() : ZoUnitTestFileBased(L"*.csv") {}

 protected:
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(ApiCsvFileTest, ZoUnitTestFileBased);

// The subtest names after InitSubtests on `dir` with `wildcard`.
XbArray<CString> subtestsOf(const CString& dir, const CString& wildcard) {
  ApiFileTest test(wildcard);
  test.SetDataDirectory(dir);
  test.InitSubtests();
  XbArray<CString> names;
  for (unsigned int i = 0; i < test.GetSubtestCount(); ++i) names.Add(test.GetSubtestName(i));
  EXPECT_EQ(names, test.GetFilenames());
  return names;
}

}  // namespace

TEST(ZoUnitTestFileBased, ListsTheMatchingFilesSortedByName) {
  TempDirectory dir;
  for (const wchar_t* name : {L"b.csv", L"a.csv", L"C.csv", L"notes.txt", L"a.csv.bak"}) dir.WriteFile(name);
  EXPECT_EQ(subtestsOf(dir.Path(), L"*.csv"), (XbArray<CString>{L"C.csv", L"a.csv", L"b.csv"}));
}

TEST(ZoUnitTestFileBased, DirectoriesAreNoSubtests) {
  TempDirectory dir;
  dir.WriteFile(L"data.csv");
  dir.MakeDirectory(L"folder.csv");
  EXPECT_EQ(subtestsOf(dir.Path(), L"*.csv"), (XbArray<CString>{L"data.csv"}));
  EXPECT_EQ(subtestsOf(dir.Path(), L"*"), (XbArray<CString>{L"data.csv"}));
}

TEST(ZoUnitTestFileBased, AQuestionMarkStandsForExactlyOneCharacter) {
  TempDirectory dir;
  for (const wchar_t* name : {L"x.dat", L"x1.dat", L"xy.dat", L"x12.dat"}) dir.WriteFile(name);
  EXPECT_EQ(subtestsOf(dir.Path(), L"x?.dat"), (XbArray<CString>{L"x1.dat", L"xy.dat"}));
}

TEST(ZoUnitTestFileBased, StarsMatchAnyRunIncludingNone) {
  TempDirectory dir;
  for (const wchar_t* name : {L"abc", L"aXbYc", L"abcc", L"acb", L"ab"}) dir.WriteFile(name);
  EXPECT_EQ(subtestsOf(dir.Path(), L"a*b*c"), (XbArray<CString>{L"aXbYc", L"abc", L"abcc"}));
  EXPECT_EQ(subtestsOf(dir.Path(), L"ab"), (XbArray<CString>{L"ab"}));
}

TEST(ZoUnitTestFileBased, TheWildcardIsCaseSensitive) {
  TempDirectory dir;
  dir.WriteFile(L"upper.CSV");
  dir.WriteFile(L"lower.csv");
  EXPECT_EQ(subtestsOf(dir.Path(), L"*.csv"), (XbArray<CString>{L"lower.csv"}));
}

TEST(ZoUnitTestFileBased, AMissingDirectoryHasNoSubtests) {
  TempDirectory dir;
  EXPECT_TRUE(subtestsOf(dir.Path() + L"missing/", L"*").IsEmpty());
}

TEST(ZoUnitTestFileBased, InitSubtestsAgainSeesTheDirectoryAsItIsNow) {
  TempDirectory dir;
  dir.WriteFile(L"one.csv");
  ApiFileTest test(L"*.csv");
  test.SetDataDirectory(dir.Path());
  test.InitSubtests();
  ASSERT_EQ(test.GetSubtestCount(), 1u);
  dir.WriteFile(L"two.csv");
  test.InitSubtests();
  EXPECT_EQ(test.GetFilenames(), (XbArray<CString>{L"one.csv", L"two.csv"}));
  EXPECT_EQ(test.GetSubtestCount(), 2u);
}

TEST(ZoUnitTestFileBased, GetFilePathJoinsDirectoryAndFileName) {
  TempDirectory dir;
  dir.WriteFile(L"case.csv");
  ApiFileTest test(L"*.csv");
  test.SetDataDirectory(dir.Path());
  test.InitSubtests();
  EXPECT_EQ(test.GetFilePath(0), dir.Path() + L"case.csv");
  const CString withoutSeparator = dir.Path().Left(dir.Path().GetLength() - 1);
  test.SetDataDirectory(withoutSeparator);
  EXPECT_EQ(test.GetFilePath(0), dir.Path() + L"case.csv");
  EXPECT_THROW(test.GetFilePath(1), std::out_of_range);
}

TEST(ZoUnitTestFileBased, ARegisteredClassIsFoundAsFileBasedThroughTheFactory) {
  TempDirectory dir;
  dir.WriteFile(L"x.csv");
  std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiCsvFileTest");
  ASSERT_NE(test, nullptr);
  EXPECT_TRUE(test->IsKindOf(ZoUnitTestFileBased::RTTI));
  test->SetDataDirectory(dir.Path());
  test->InitSubtests();
  auto* fileBased = dynamic_cast<ZoUnitTestFileBased*>(test.get());
  ASSERT_NE(fileBased, nullptr);
  EXPECT_EQ(fileBased->GetWildcard(), CString(L"*.csv"));
  EXPECT_EQ(fileBased->GetFilenames(), (XbArray<CString>{L"x.csv"}));
}
