// IUnitTestRecreate as a recreation run uses it: only a class with the
// interface, and only for a subtest whose CanRecreate says true, has its
// data renewed; every other subtest is named as having none.
#include "foundation/IUnitTestRecreate.h"

#include <gtest/gtest.h>

#include <vector>

#include "UnitTestRecords.h"
#include "ZoTestSuite.h"
#include "foundation/UnitTestFactory.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

namespace {

// The subtests that the renewable class below was asked to recreate.
std::vector<unsigned int>& recreatedLog() {
  static std::vector<unsigned int> log;
  return log;
}

class ApiStaticTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ApiStaticTest)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// Subtest "generated" has renewable data, "fixed" has not.
class ApiRenewableTest : public ZoUnitTest, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(ApiRenewableTest)

  CString GetRecreateDescription(unsigned int) const override { return L"regenerates the mesh"; }
  bool CanRecreate(unsigned int subtest) override { return GetSubtestName(subtest) == L"generated"; }
  bool Recreate(unsigned int subtest) override {
    recreatedLog().push_back(subtest);
    return true;
  }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    names.Add(L"fixed");
    names.Add(L"generated");
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// Renews everything and describes nothing.
class ApiUndescribedTest : public ZoUnitTest, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(ApiUndescribedTest)

  bool CanRecreate(unsigned int) override { return true; }
  bool Recreate(unsigned int) override { return true; }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

XB_IMPLEMENT_DYNCREATE(ApiStaticTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiRenewableTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(ApiUndescribedTest, ZoUnitTest);

// What a recreation run of the one class `name` with `cases` prints.
CString recreate(const wchar_t* name, std::initializer_list<const wchar_t*> cases) {
  XbArray<SUnitTest> classes;
  classes.Add(TestSupport::MakeClass(name, L"/nonexistent/", cases));
  CEnvironment env;
  COutRecorder recorder;
  Run::Recreate(env, classes, Run::SCallbacks());
  return recorder.Text();
}

}  // namespace

TEST(IUnitTestRecreate, AClassWithoutTheInterfaceHasNoRenewableData) {
  const std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(L"ApiStaticTest");
  ASSERT_NE(test, nullptr);
  EXPECT_EQ(dynamic_cast<IUnitTestRecreate*>(test.get()), nullptr);
  EXPECT_EQ(recreate(L"ApiStaticTest", {L"only"}),
            CString(L"ApiStaticTest:\n\tSubtest 'only' hat keine erneuerbaren Daten.\n"
                    L"\nNeuerzeugen der Testfälle beendet.\n"));
}

TEST(IUnitTestRecreate, ASubtestWhoseCanRecreateIsFalseIsNotRecreated) {
  recreatedLog().clear();
  EXPECT_EQ(recreate(L"ApiRenewableTest", {L"fixed"}),
            CString(L"ApiRenewableTest:\n\tSubtest 'fixed' hat keine erneuerbaren Daten.\n"
                    L"\nNeuerzeugen der Testfälle beendet.\n"));
  EXPECT_TRUE(recreatedLog().empty());
}

TEST(IUnitTestRecreate, ASubtestWhoseCanRecreateIsTrueIsRecreated) {
  recreatedLog().clear();
  EXPECT_EQ(recreate(L"ApiRenewableTest", {L"generated"}),
            CString(L"ApiRenewableTest:\n\tgenerated...\n\t\tDatensatz wurde erneuert.\n"
                    L"\nNeuerzeugen der Testfälle beendet.\n"));
  EXPECT_EQ(recreatedLog(), std::vector<unsigned int>{1u});
}

TEST(IUnitTestRecreate, RecreateDescriptionsAreEmptyUnlessTheClassGivesThem) {
  ApiUndescribedTest undescribed;
  EXPECT_EQ(static_cast<const IUnitTestRecreate&>(undescribed).GetRecreateDescription(0), CString());
  ApiRenewableTest described;
  EXPECT_EQ(static_cast<const IUnitTestRecreate&>(described).GetRecreateDescription(0),
            CString(L"regenerates the mesh"));
}
