#include "foundation/XbRTTI.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>
#include <vector>

#include "foundation/IObject.h"
#include "foundation/ZoUnitTest.h"

namespace {

class ApiRttiBase : public IObject {
  XB_DECLARE_DYNCREATE(ApiRttiBase)
};
class ApiRttiDerived : public ApiRttiBase {
  XB_DECLARE_DYNCREATE(ApiRttiDerived)
};
class ApiRttiAbstract : public IObject {
  XB_DECLARE_DYNCREATE(ApiRttiAbstract)
  virtual void Work() = 0;
};
class ApiRttiNoDefault : public IObject {
  XB_DECLARE_DYNCREATE(ApiRttiNoDefault)
  explicit ApiRttiNoDefault(int value) : iValue(value) {}
  int iValue;
};
// Derived, but not registered itself.
class ApiRttiUnregistered : public ApiRttiDerived {};

XB_IMPLEMENT_DYNCREATE(ApiRttiBase, IObject);
XB_IMPLEMENT_DYNCREATE(ApiRttiDerived, ApiRttiBase);
XB_IMPLEMENT_DYNCREATE(ApiRttiAbstract, IObject);
XB_IMPLEMENT_DYNCREATE(ApiRttiNoDefault, IObject);

}  // namespace

namespace ApiRttiSpace {
class CQualified : public IObject {
  XB_DECLARE_DYNCREATE(CQualified)
};
}  // namespace ApiRttiSpace
XB_IMPLEMENT_DYNCREATE(ApiRttiSpace::CQualified, IObject);

TEST(XbRTTI, FindGivesTheRecordRegisteredUnderTheClassName) {
  const XbRTTI* rtti = XbRTTI::Find(L"ApiRttiDerived");
  ASSERT_EQ(rtti, &ApiRttiDerived::RTTI);
  EXPECT_STREQ(rtti->GetClassName(), L"ApiRttiDerived");
  EXPECT_EQ(rtti->GetBase(), &ApiRttiBase::RTTI);
  EXPECT_EQ(ApiRttiBase::RTTI.GetBase(), &IObject::RTTI);
  EXPECT_EQ(IObject::RTTI.GetBase(), nullptr);
}

TEST(XbRTTI, TheNameIsTheClassNameAsWritten) {
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiSpace::CQualified"), &ApiRttiSpace::CQualified::RTTI);
  EXPECT_EQ(XbRTTI::Find(L"CQualified"), nullptr);
}

TEST(XbRTTI, FindGivesNullForUnknownNames) {
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiNoSuchClass"), nullptr);
  EXPECT_EQ(XbRTTI::Find(L"apirttiderived"), nullptr);  // case-sensitive
  EXPECT_EQ(XbRTTI::Find(L""), nullptr);
  EXPECT_EQ(XbRTTI::Find(nullptr), nullptr);
}

TEST(XbRTTI, TheFoundationsOwnClassesAreRegistered) {
  EXPECT_EQ(XbRTTI::Find(L"IObject"), &IObject::RTTI);
  EXPECT_EQ(XbRTTI::Find(L"ZoUnitTest"), &ZoUnitTest::RTTI);
  EXPECT_EQ(XbRTTI::Find(L"ZoUnitTestFileBased"), &ZoUnitTestFileBased::RTTI);
  EXPECT_TRUE(ZoUnitTestFileBased::RTTI.IsKindOf(ZoUnitTest::RTTI));
}

TEST(XbRTTI, IsKindOfFollowsTheBaseRecords) {
  EXPECT_TRUE(ApiRttiDerived::RTTI.IsKindOf(ApiRttiDerived::RTTI));
  EXPECT_TRUE(ApiRttiDerived::RTTI.IsKindOf(ApiRttiBase::RTTI));
  EXPECT_TRUE(ApiRttiDerived::RTTI.IsKindOf(IObject::RTTI));
  EXPECT_FALSE(ApiRttiBase::RTTI.IsKindOf(ApiRttiDerived::RTTI));
  EXPECT_FALSE(ApiRttiDerived::RTTI.IsKindOf(ZoUnitTest::RTTI));
}

TEST(XbRTTI, GetCreateMakesAnInstanceOfTheNamedClass) {
  const XbRTTI::FnCreate create = XbRTTI::getCreate(L"ApiRttiDerived");
  ASSERT_NE(create, nullptr);
  const std::unique_ptr<IObject> object = create();
  ASSERT_NE(object, nullptr);
  EXPECT_NE(dynamic_cast<ApiRttiDerived*>(object.get()), nullptr);
  EXPECT_TRUE(object->IsKindOf(ApiRttiDerived::RTTI));
  EXPECT_TRUE(object->IsKindOf(ApiRttiBase::RTTI));
  EXPECT_FALSE(object->IsKindOf(ZoUnitTest::RTTI));
}

TEST(XbRTTI, GetCreateIsNullForClassesThatCannotBeCreated) {
  EXPECT_EQ(XbRTTI::getCreate(L"ApiRttiAbstract"), nullptr);
  EXPECT_EQ(XbRTTI::getCreate(L"ApiRttiNoDefault"), nullptr);
  EXPECT_EQ(XbRTTI::getCreate(L"ZoUnitTest"), nullptr);
  EXPECT_EQ(XbRTTI::getCreate(L"IObject"), nullptr);
  EXPECT_EQ(XbRTTI::getCreate(L"ApiRttiNoSuchClass"), nullptr);
  EXPECT_EQ(ApiRttiNoDefault(3).iValue, 3);
}

TEST(XbRTTI, AnInstanceIsOfTheKindOfItsRegisteredBases) {
  const ApiRttiUnregistered unregistered;
  EXPECT_TRUE(unregistered.IsKindOf(ApiRttiDerived::RTTI));
  EXPECT_TRUE(unregistered.IsKindOf(IObject::RTTI));
  const ApiRttiBase base;
  EXPECT_FALSE(base.IsKindOf(ApiRttiDerived::RTTI));
}

TEST(XbRTTI, ARegistrarHoldsItsClassForItsLifetime) {
  const XbRTTI record(L"ApiRttiTransient", &IObject::RTTI, nullptr, nullptr);
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiTransient"), nullptr);
  {
    const XbRTTIRegistrar registrar(record);
    EXPECT_EQ(XbRTTI::Find(L"ApiRttiTransient"), &record);
  }
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiTransient"), nullptr);
}

TEST(XbRTTI, OfTwoRegistrationsUnderOneNameTheEarlierIsFound) {
  const XbRTTI first(L"ApiRttiTwice", &IObject::RTTI, nullptr, nullptr);
  const XbRTTI second(L"ApiRttiTwice", &IObject::RTTI, nullptr, nullptr);
  std::optional<XbRTTIRegistrar> firstRegistrar(std::in_place, first);
  std::optional<XbRTTIRegistrar> secondRegistrar(std::in_place, second);
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiTwice"), &first);
  firstRegistrar.reset();
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiTwice"), &second);
  secondRegistrar.reset();
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiTwice"), nullptr);
}

TEST(XbRTTI, LookupsFromManyThreadsWhileClassesComeAndGo) {
  const XbRTTI transient(L"ApiRttiComesAndGoes", &IObject::RTTI, nullptr, nullptr);
  std::atomic<bool> stop{false};
  std::atomic<int> wrong{0};
  std::atomic<int> lookups{0};
  std::vector<std::thread> readers;
  for (int t = 0; t < 3; ++t) {
    readers.emplace_back([&] {
      while (!stop.load()) {
        if (XbRTTI::Find(L"ApiRttiDerived") != &ApiRttiDerived::RTTI) ++wrong;
        if (!XbRTTI::getCreate(L"ApiRttiBase")) ++wrong;
        const XbRTTI* coming = XbRTTI::Find(L"ApiRttiComesAndGoes");
        if (coming && coming != &transient) ++wrong;
        ++lookups;
      }
    });
  }
  for (int i = 0; i < 2000; ++i) { const XbRTTIRegistrar registrar(transient); }
  while (lookups.load() < 1000) std::this_thread::yield();
  stop = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(wrong.load(), 0);
  EXPECT_EQ(XbRTTI::Find(L"ApiRttiComesAndGoes"), nullptr);
}
