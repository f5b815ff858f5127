#include "foundation/ZoUnitTest.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

// Lists m_names, records what its hooks saw and answers with m_eResult.
class ApiRecordingTest : public ZoUnitTest {
 public:
  XbArray<CString> m_names{L"first", L"second", L"third"};
  EResult m_eResult = eSuccess;
  int m_iInitCalls = 0;
  unsigned int m_uiListSizeOnEntry = 99;
  unsigned int m_uiRunIndex = 99;
  bool m_bThrowOnRun = false;
  bool m_bThrowOnInit = false;

  using ZoUnitTest::Error;
  using ZoUnitTest::GetDataDirectory;
  using ZoUnitTest::GetMessageStream;
  using ZoUnitTest::Info;

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    ++m_iInitCalls;
    m_uiListSizeOnEntry = names.GetCount();
    if (m_bThrowOnInit) throw std::runtime_error("no data");
    names.Append(m_names);
  }
  EResult OnRunSubtest(unsigned int index) override {
    m_uiRunIndex = index;
    if (m_bThrowOnRun) throw 42;
    return m_eResult;
  }
};

}  // namespace

TEST(ZoUnitTest, NoSubtestsBeforeInitSubtests) {
  ApiRecordingTest test;
  EXPECT_EQ(test.GetSubtestCount(), 0u);
  EXPECT_EQ(test.m_iInitCalls, 0);
}

TEST(ZoUnitTest, InitSubtestsBuildsTheListThroughTheHook) {
  ApiRecordingTest test;
  test.InitSubtests();
  EXPECT_EQ(test.m_iInitCalls, 1);
  ASSERT_EQ(test.GetSubtestCount(), 3u);
  EXPECT_EQ(test.GetSubtestName(0), CString(L"first"));
  EXPECT_EQ(test.GetSubtestName(1), CString(L"second"));
  EXPECT_EQ(test.GetSubtestName(2), CString(L"third"));
  EXPECT_EQ(test.GetSubtestName(3), CString());
  const XbArray<CString>& names = test.GetSubtestNames();
  ASSERT_EQ(names.GetCount(), 3u);
  EXPECT_EQ(names[1], CString(L"second"));
}

TEST(ZoUnitTest, InitSubtestsIsRepeatableAndStartsFromAnEmptyList) {
  ApiRecordingTest test;
  test.InitSubtests();
  test.m_names = XbArray<CString>{L"only"};
  test.InitSubtests();
  EXPECT_EQ(test.m_iInitCalls, 2);
  EXPECT_EQ(test.m_uiListSizeOnEntry, 0u);
  ASSERT_EQ(test.GetSubtestCount(), 1u);
  EXPECT_EQ(test.GetSubtestName(0), CString(L"only"));
}

TEST(ZoUnitTest, TwoSubtestsMayShareAName) {
  ApiRecordingTest test;
  test.m_names = XbArray<CString>{L"same", L"same"};
  test.InitSubtests();
  ASSERT_EQ(test.GetSubtestCount(), 2u);
  EXPECT_EQ(test.GetSubtestName(0), test.GetSubtestName(1));
}

TEST(ZoUnitTest, AnExceptionOfTheListHookTravelsOut) {
  ApiRecordingTest test;
  test.m_bThrowOnInit = true;
  EXPECT_THROW(test.InitSubtests(), std::runtime_error);
  EXPECT_EQ(test.GetSubtestCount(), 0u);
}

TEST(ZoUnitTest, RunUnitTestGivesTheHookTheIndexAndPassesEveryResultThrough) {
  ApiRecordingTest test;
  test.InitSubtests();
  for (int value = 0; value <= 4; ++value) {
    test.m_eResult = static_cast<ZoUnitTest::EResult>(value);
    EXPECT_EQ(test.RunUnitTest(2), test.m_eResult);
  }
  EXPECT_EQ(test.m_uiRunIndex, 2u);
  EXPECT_EQ(ZoUnitTest::eDataError, 0);
  EXPECT_EQ(ZoUnitTest::eSuccess, 1);
  EXPECT_EQ(ZoUnitTest::eFailure, 2);
  EXPECT_EQ(ZoUnitTest::eException, 3);
  EXPECT_EQ(ZoUnitTest::eDifferentOutput, 4);
}

TEST(ZoUnitTest, AResultAboveFourIsPassedThroughUnchanged) {
  ApiRecordingTest test;
  test.InitSubtests();
  test.m_eResult = static_cast<ZoUnitTest::EResult>(7);
  EXPECT_EQ(static_cast<int>(test.RunUnitTest(0)), 7);
}

TEST(ZoUnitTest, AnExceptionOfTheRunHookTravelsOut) {
  ApiRecordingTest test;
  test.InitSubtests();
  test.m_bThrowOnRun = true;
  EXPECT_THROW(test.RunUnitTest(1), int);
}

TEST(ZoUnitTest, WarmUpByDefaultDoesNothingAndSucceeds) {
  ApiRecordingTest test;
  EXPECT_TRUE(test.WarmUp());
  EXPECT_EQ(test.m_iInitCalls, 0);
}

TEST(ZoUnitTest, TheDataDirectoryIsKeptAsGiven) {
  ApiRecordingTest test;
  EXPECT_EQ(test.GetDataDirectory(), CString());
  test.SetDataDirectory(L"/data/ApiRecordingTest/");
  EXPECT_EQ(test.GetDataDirectory(), CString(L"/data/ApiRecordingTest/"));
}

TEST(ZoUnitTest, InfoAndErrorWriteOneTaggedLineEach) {
  ApiRecordingTest test;
  XbStreamWriteASCIIStringT<CString> stream;
  test.SetMessageStream(stream);
  EXPECT_EQ(test.GetMessageStream(), &stream);
  test.Info(L"%d files in %s", 3, CString(L"dir"));
  test.Error(L"plain");
  EXPECT_EQ(stream.GetString(), CString(L"INFO:  3 files in dir\nERROR: plain\n"));
}

TEST(ZoUnitTest, WithoutAStreamInfoAndErrorWriteNothing) {
  ApiRecordingTest test;
  EXPECT_EQ(test.GetMessageStream(), nullptr);
  test.Info(L"lost %d", 1);
  test.Error(L"lost too");
  XbStreamWriteASCIIStringT<CString> stream;
  test.SetMessageStream(stream);
  test.Info(L"kept");
  EXPECT_EQ(stream.GetString(), CString(L"INFO:  kept\n"));
}

TEST(ZoUnitTest, TheStreamCanBeSetOnAConstInstance) {
  ApiRecordingTest test;
  const ZoUnitTest& constTest = test;
  XbStreamWriteASCIIStringT<CString> stream;
  constTest.SetMessageStream(stream);
  test.Error(L"%s", L"seen");
  EXPECT_EQ(stream.GetString(), CString(L"ERROR: seen\n"));
}

TEST(ZoUnitTest, AnInstanceIsAKindOfZoUnitTestOnly) {
  const ApiRecordingTest test;
  EXPECT_TRUE(test.IsKindOf(ZoUnitTest::RTTI));
  EXPECT_TRUE(test.IsKindOf(IObject::RTTI));
  EXPECT_FALSE(test.IsKindOf(ZoUnitTestFileBased::RTTI));
}
