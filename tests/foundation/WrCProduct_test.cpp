#include "foundation/WrCProduct.h"

#include <gtest/gtest.h>

TEST(WrCProduct, AReplacingRegistrationIsWhatGetGives) {
  const WrSProductInfo info{19, L"ZoTestSuite", L"1.0", L"", 0};
  EXPECT_TRUE(WrCProduct::Set(info, true));
  const std::optional<WrSProductInfo> registered = WrCProduct::Get();
  ASSERT_TRUE(registered.has_value());
  EXPECT_EQ(registered->uiProductNumber, 19u);
  EXPECT_EQ(registered->sName, CString(L"ZoTestSuite"));
  EXPECT_EQ(registered->sVersion, CString(L"1.0"));
  EXPECT_TRUE(registered->sDescription.IsEmpty());
  EXPECT_EQ(registered->uiFlags, 0u);
}

TEST(WrCProduct, WithoutReplacingAnEarlierRegistrationStays) {
  ASSERT_TRUE(WrCProduct::Set(WrSProductInfo{1, L"First", L"1", L"", 0}, true));
  EXPECT_FALSE(WrCProduct::Set(WrSProductInfo{2, L"Second", L"2", L"", 0}, false));
  EXPECT_EQ(WrCProduct::Get()->sName, CString(L"First"));
  EXPECT_TRUE(WrCProduct::Set(WrSProductInfo{2, L"Second", L"2", L"", 0}, true));
  EXPECT_EQ(WrCProduct::Get()->uiProductNumber, 2u);
}
