// IDebugging as the case runner uses it: the debug options of a run reach
// a class that implements the interface, in the documented order and only
// for the keys it supports; a class without it runs as any other.
#include "foundation/IDebugging.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "CaseBlock.h"
#include "foundation/UnitTestFactory.h"

using TestSuite::SRunOptions;

namespace {

// Every SetOption call of the debuggable class below, in order.
std::vector<std::pair<int, bool>>& setOptionLog() {
  static std::vector<std::pair<int, bool>> log;
  return log;
}

class ApiPlainTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ApiPlainTest)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// Supports keys 0 and 2, not 1; its subtest passes only with key 2 set.
class ApiDebuggableTest : public ZoUnitTest, public IDebugging {
  XB_DECLARE_DYNCREATE(ApiDebuggableTest)

  CString GetOptionDescription(int key) const override { return key == 2 ? CString(L"keep output") : CString(); }
  bool SupportsOption(int key) override { return key == 0 || key == 2; }
  void SetOption(int key, bool value) override {
    setOptionLog().emplace_back(key, value);
    if (key == 2) m_bKeepOutput = value;
  }
  bool m_bKeepOutput = false;

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return m_bKeepOutput ? eSuccess : eFailure; }
};

// Supports every key and says nothing of any.
class ApiSilentDebuggableTest : public ZoUnitTest, public IDebugging {
  XB_DECLARE_DYNCREATE(ApiSilentDebuggableTest)

  bool SupportsOption(int) override { return true; }
  void SetOption(int, bool) override {}

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

XB_IMPLEMENT_DYNCREATE(ApiPlainTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiDebuggableTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiSilentDebuggableTest, ZoUnitTest);

SRunOptions debugOptions(bool option0, bool option1, bool option2) {
  SRunOptions options;
  options.bDebugOption0 = option0;
  options.bDebugOption1 = option1;
  options.bDebugOption2 = option2;
  return options;
}

}  // namespace

TEST(IDebugging, AClassWithoutTheInterfaceRunsWithAnyDebugOptions) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiPlainTest");
  ASSERT_NE(test, nullptr);
  EXPECT_EQ(dynamic_cast<IDebugging*>(test.get()), nullptr);
  const auto block = TestSupport::RunCaseThroughBlock(L"ApiPlainTest", L"only", debugOptions(true, true, true));
  EXPECT_EQ(block->eResult, TestSuite::Run::eCaseOk);
}

TEST(IDebugging, TheRunSetsTheSupportedKeysInTheOrderOneTwoZero) {
  setOptionLog().clear();
  const auto block = TestSupport::RunCaseThroughBlock(L"ApiDebuggableTest", L"only", debugOptions(false, true, true));
  EXPECT_EQ(setOptionLog(), (std::vector<std::pair<int, bool>>{{2, true}, {0, false}}));
  EXPECT_EQ(block->eResult, TestSuite::Run::eCaseOk);
}

TEST(IDebugging, AnOptionThatIsOffIsSetToFalseToo) {
  setOptionLog().clear();
  const auto block = TestSupport::RunCaseThroughBlock(L"ApiDebuggableTest", L"only", debugOptions(true, true, false));
  EXPECT_EQ(setOptionLog(), (std::vector<std::pair<int, bool>>{{2, false}, {0, true}}));
  EXPECT_EQ(block->eResult, TestSuite::Run::eCaseError);
}

TEST(IDebugging, OptionDescriptionsAreEmptyUnlessTheClassGivesThem) {
  ApiSilentDebuggableTest silent;
  EXPECT_EQ(static_cast<const IDebugging&>(silent).GetOptionDescription(2), CString());
  ApiDebuggableTest described;
  EXPECT_EQ(static_cast<const IDebugging&>(described).GetOptionDescription(2), CString(L"keep output"));
}
