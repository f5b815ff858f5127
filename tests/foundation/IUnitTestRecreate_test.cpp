#include "foundation/IUnitTestRecreate.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/UnitTestFactory.h"

namespace {

class ApiStaticTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ApiStaticTest)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// Subtest "generated" has renewable data, "fixed" has not.
class ApiRenewableTest : public ZoUnitTest, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(ApiRenewableTest)

  bool CanRecreate(unsigned int subtest) override { return GetSubtestName(subtest) == L"generated"; }
  bool Recreate(unsigned int subtest) override {
    m_recreated.push_back(subtest);
    return true;
  }
  std::vector<unsigned int> m_recreated;

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    names.Add(L"fixed");
    names.Add(L"generated");
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

XB_IMPLEMENT_DYNCREATE(ApiStaticTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiRenewableTest, ZoUnitTest);

// What a recreation does with one subtest: true if data was renewed.
bool recreate(ZoUnitTest& test, const CString& subtest) {
  test.InitSubtests();
  const std::optional<unsigned int> index = FindSubtestIndex(test, subtest);
  auto* recreatable = dynamic_cast<IUnitTestRecreate*>(&test);
  if (!index || !recreatable || !recreatable->CanRecreate(*index)) return false;
  recreatable->Recreate(*index);
  return true;
}

}  // namespace

TEST(IUnitTestRecreate, AClassWithoutTheInterfaceHasNoRenewableData) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiStaticTest");
  ASSERT_NE(test, nullptr);
  EXPECT_EQ(dynamic_cast<IUnitTestRecreate*>(test.get()), nullptr);
  EXPECT_FALSE(recreate(*test, L"only"));
}

TEST(IUnitTestRecreate, ASubtestWhoseCanRecreateIsFalseIsNotRecreated) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiRenewableTest");
  ASSERT_NE(test, nullptr);
  EXPECT_FALSE(recreate(*test, L"fixed"));
  EXPECT_TRUE(static_cast<ApiRenewableTest*>(test.get())->m_recreated.empty());
}

TEST(IUnitTestRecreate, ASubtestWhoseCanRecreateIsTrueIsRecreated) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiRenewableTest");
  ASSERT_NE(test, nullptr);
  EXPECT_TRUE(recreate(*test, L"generated"));
  EXPECT_EQ(static_cast<ApiRenewableTest*>(test.get())->m_recreated, std::vector<unsigned int>{1u});
}

TEST(IUnitTestRecreate, RecreateDescriptionsAreEmptyByDefault) {
  ApiRenewableTest test;
  EXPECT_EQ(static_cast<const IUnitTestRecreate&>(test).GetRecreateDescription(0), CString());
}
