#include "foundation/IDebugging.h"

#include <gtest/gtest.h>

#include <map>

#include "foundation/UnitTestFactory.h"

namespace {

class ApiPlainTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ApiPlainTest)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// Supports keys 0 and 2, not 1.
class ApiDebuggableTest : public ZoUnitTest, public IDebugging {
  XB_DECLARE_DYNCREATE(ApiDebuggableTest)

  CString GetOptionDescription(int key) const override { return key == 2 ? CString(L"keep output") : CString(); }
  bool SupportsOption(int key) override { return key == 0 || key == 2; }
  void SetOption(int key, bool value) override { m_options[key] = value; }
  std::map<int, bool> m_options;

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return m_options[2] ? eSuccess : eFailure; }
};

XB_IMPLEMENT_DYNCREATE(ApiPlainTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiDebuggableTest, ZoUnitTest);

// What the system does before a run: keys 1, 2, 0, each set only if supported.
void applyOptions(IDebugging& debugging, bool option0, bool option1, bool option2) {
  const std::pair<int, bool> order[] = {{1, option1}, {2, option2}, {0, option0}};
  for (const auto& [key, value] : order) {
    if (debugging.SupportsOption(key)) debugging.SetOption(key, value);
  }
}

}  // namespace

TEST(IDebugging, AClassWithoutTheInterfaceIsNotOne) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiPlainTest");
  ASSERT_NE(test, nullptr);
  EXPECT_EQ(dynamic_cast<IDebugging*>(test.get()), nullptr);
}

TEST(IDebugging, AClassWithTheInterfaceTakesTheOptionsItSupports) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiDebuggableTest");
  ASSERT_NE(test, nullptr);
  auto* debugging = dynamic_cast<IDebugging*>(test.get());
  ASSERT_NE(debugging, nullptr);
  applyOptions(*debugging, false, true, true);
  const auto& options = static_cast<ApiDebuggableTest*>(test.get())->m_options;
  EXPECT_EQ(options, (std::map<int, bool>{{0, false}, {2, true}}));
  test->InitSubtests();
  EXPECT_EQ(test->RunUnitTest(0), ZoUnitTest::eSuccess);
}

TEST(IDebugging, OptionDescriptionsAreEmptyUnlessTheClassGivesThem) {
  ApiDebuggableTest test;
  const IDebugging& debugging = test;
  EXPECT_EQ(debugging.GetOptionDescription(2), CString(L"keep output"));
  EXPECT_EQ(debugging.GetOptionDescription(1), CString());
}
