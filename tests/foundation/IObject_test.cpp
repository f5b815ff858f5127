#include "foundation/IObject.h"

#include <gtest/gtest.h>

namespace {

class ApiObjectLeaf : public IObject {
  XB_DECLARE_DYNCREATE(ApiObjectLeaf)
};
XB_IMPLEMENT_DYNCREATE(ApiObjectLeaf, IObject);

}  // namespace

TEST(IObject, TheRootIsRegisteredWithoutBaseAndCannotBeCreated) {
  EXPECT_EQ(XbRTTI::Find(L"IObject"), &IObject::RTTI);
  EXPECT_EQ(IObject::RTTI.GetBase(), nullptr);
  EXPECT_EQ(IObject::RTTI.GetCreate(), nullptr);
}

TEST(IObject, EveryObjectIsAKindOfIObject) {
  const std::unique_ptr<IObject> object = XbRTTI::getCreate(L"ApiObjectLeaf")();
  ASSERT_NE(object, nullptr);
  EXPECT_TRUE(object->IsKindOf(IObject::RTTI));
  EXPECT_TRUE(object->IsKindOf(ApiObjectLeaf::RTTI));
  EXPECT_TRUE(ApiObjectLeaf::RTTI.IsKindOf(IObject::RTTI));
}
