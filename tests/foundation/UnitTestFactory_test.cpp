#include "foundation/UnitTestFactory.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

class ApiFactoryTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ApiFactoryTest)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (const wchar_t* name : {L"alpha", L"twin", L"Beta", L"twin", L"beta"}) names.Add(name);
  }
  EResult OnRunSubtest(unsigned int index) override { return index == 1 ? eSuccess : eFailure; }
};

// Lists what s_names holds when InitSubtests runs.
class ApiFactoryChangingTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ApiFactoryChangingTest)
  static XbArray<CString> s_names;

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Append(s_names); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XbArray<CString> ApiFactoryChangingTest::s_names;

// Registered and creatable, but no test class.
class ApiFactoryPlainObject : public IObject {
  XB_DECLARE_DYNCREATE(ApiFactoryPlainObject)
  ApiFactoryPlainObject() {
    ++s_iLive;
    ++s_iMade;
  }
  ~ApiFactoryPlainObject() override { --s_iLive; }
  static std::atomic<int> s_iLive;
  static std::atomic<int> s_iMade;
};
std::atomic<int> ApiFactoryPlainObject::s_iLive{0};
std::atomic<int> ApiFactoryPlainObject::s_iMade{0};

XB_IMPLEMENT_DYNCREATE(ApiFactoryTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiFactoryChangingTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiFactoryPlainObject, IObject);

}  // namespace

TEST(UnitTestFactory, CreatesAnInstanceOfARegisteredTestClass) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiFactoryTest");
  ASSERT_NE(test, nullptr);
  EXPECT_NE(dynamic_cast<ApiFactoryTest*>(test.get()), nullptr);
  EXPECT_TRUE(test->IsKindOf(ZoUnitTest::RTTI));
  EXPECT_TRUE(test->IsKindOf(ApiFactoryTest::RTTI));
}

TEST(UnitTestFactory, EveryCallMakesANewInstance) {
  const std::unique_ptr<ZoUnitTest> first = CreateUnitTestInstance(L"ApiFactoryTest");
  const std::unique_ptr<ZoUnitTest> second = CreateUnitTestInstance(L"ApiFactoryTest");
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first.get(), second.get());
}

TEST(UnitTestFactory, UnknownOrUncreatableClassesGiveNoInstance) {
  EXPECT_EQ(CreateUnitTestInstance(L"ApiFactoryNoSuchClass"), nullptr);
  EXPECT_EQ(CreateUnitTestInstance(L"ZoUnitTest"), nullptr);
  EXPECT_EQ(CreateUnitTestInstance(L"ZoUnitTestFileBased"), nullptr);
  EXPECT_EQ(CreateUnitTestInstance(CString()), nullptr);
}

TEST(UnitTestFactory, AnObjectThatIsNoTestIsDestroyedAndGivesNoInstance) {
  const int made = ApiFactoryPlainObject::s_iMade;
  EXPECT_EQ(CreateUnitTestInstance(L"ApiFactoryPlainObject"), nullptr);
  EXPECT_EQ(ApiFactoryPlainObject::s_iMade, made + 1);
  EXPECT_EQ(ApiFactoryPlainObject::s_iLive, 0);
}

TEST(UnitTestFactory, OfTwoSubtestsOfOneNameTheFirstIsFound) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiFactoryTest");
  ASSERT_NE(test, nullptr);
  test->InitSubtests();
  const std::optional<unsigned int> index = FindSubtestIndex(*test, L"twin");
  ASSERT_TRUE(index.has_value());
  EXPECT_EQ(*index, 1u);
  EXPECT_EQ(test->RunUnitTest(*index), ZoUnitTest::eSuccess);
}

TEST(UnitTestFactory, SubtestNamesAreComparedExactly) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiFactoryTest");
  ASSERT_NE(test, nullptr);
  test->InitSubtests();
  EXPECT_EQ(FindSubtestIndex(*test, L"Beta"), std::optional<unsigned int>(2u));
  EXPECT_EQ(FindSubtestIndex(*test, L"beta"), std::optional<unsigned int>(4u));
  EXPECT_EQ(FindSubtestIndex(*test, L"BETA"), std::nullopt);
  EXPECT_EQ(FindSubtestIndex(*test, L"alph"), std::nullopt);
}

TEST(UnitTestFactory, ASubtestGoneSinceDiscoveryIsNotFound) {
  ApiFactoryChangingTest::s_names = XbArray<CString>{L"kept", L"dropped"};
  const std::unique_ptr<ZoUnitTest> discovery = CreateUnitTestInstance(L"ApiFactoryChangingTest");
  ASSERT_NE(discovery, nullptr);
  discovery->InitSubtests();
  ASSERT_EQ(discovery->GetSubtestCount(), 2u);
  const CString name = discovery->GetSubtestName(1);

  ApiFactoryChangingTest::s_names = XbArray<CString>{L"kept"};
  const std::unique_ptr<ZoUnitTest> run = CreateUnitTestInstance(L"ApiFactoryChangingTest");
  ASSERT_NE(run, nullptr);
  run->InitSubtests();
  EXPECT_EQ(FindSubtestIndex(*run, name), std::nullopt);
  EXPECT_EQ(FindSubtestIndex(*run, L"kept"), std::optional<unsigned int>(0u));
}

TEST(UnitTestFactory, NothingIsFoundBeforeInitSubtests) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiFactoryTest");
  ASSERT_NE(test, nullptr);
  EXPECT_EQ(FindSubtestIndex(*test, L"alpha"), std::nullopt);
}
