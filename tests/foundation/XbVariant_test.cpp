#include "foundation/XbVariant.h"

#include <gtest/gtest.h>

#include <variant>

TEST(XbVariant, DefaultIsEmpty) {
  const XbVariant v;
  EXPECT_TRUE(v.IsEmpty());
  EXPECT_EQ(v.GetType(), XbVariant::EType::Empty);
  EXPECT_THROW(v.GetBool(), std::bad_variant_access);
}

TEST(XbVariant, EachKindKeepsItsTypeAndValue) {
  const XbVariant b(true);
  EXPECT_TRUE(b.IsBool());
  EXPECT_TRUE(b.GetBool());
  const XbVariant u(std::uint32_t{4000000000u});
  EXPECT_TRUE(u.IsUInt32());
  EXPECT_EQ(u.GetUInt32(), 4000000000u);
  const XbVariant u64(std::uint64_t{1} << 40);
  EXPECT_EQ(u64.GetType(), XbVariant::EType::UInt64);
  EXPECT_EQ(u64.GetUInt64(), std::uint64_t{1} << 40);
  const XbVariant i(std::int32_t{-3});
  EXPECT_EQ(i.GetType(), XbVariant::EType::Int32);
  EXPECT_EQ(i.GetInt32(), -3);
  const XbVariant d(0.25);
  EXPECT_EQ(d.GetType(), XbVariant::EType::Double);
  EXPECT_EQ(d.GetDouble(), 0.25);
  const XbVariant t(CString(L"text"));
  EXPECT_EQ(t.GetType(), XbVariant::EType::Text);
  EXPECT_EQ(t.GetText(), CString(L"text"));
  const XbVariant w(L"wide");
  EXPECT_EQ(w.GetType(), XbVariant::EType::Text);  // not a bool through the pointer
  EXPECT_EQ(w.GetText(), CString(L"wide"));
  EXPECT_FALSE(t.IsEmpty());
  EXPECT_FALSE(t.IsBool());
  EXPECT_FALSE(b.IsUInt32());
}

TEST(XbVariant, ReadingTheWrongTypeThrows) {
  const XbVariant u(std::uint32_t{1});
  EXPECT_THROW(u.GetBool(), std::bad_variant_access);
  EXPECT_THROW(u.GetInt32(), std::bad_variant_access);
  EXPECT_THROW(u.GetUInt64(), std::bad_variant_access);
  EXPECT_THROW(u.GetText(), std::bad_variant_access);
  EXPECT_THROW(XbVariant(true).GetUInt32(), std::bad_variant_access);
  EXPECT_THROW(XbVariant(L"1").GetDouble(), std::bad_variant_access);
}

TEST(XbVariant, EqualityNeedsTheSameTypeAndValue) {
  EXPECT_EQ(XbVariant(std::uint32_t{1}), XbVariant(std::uint32_t{1}));
  EXPECT_FALSE(XbVariant(std::uint32_t{1}) == XbVariant(std::int32_t{1}));
  EXPECT_FALSE(XbVariant(std::uint32_t{1}) == XbVariant(true));
  EXPECT_FALSE(XbVariant(std::uint32_t{1}) == XbVariant(std::uint32_t{2}));
  EXPECT_EQ(XbVariant(L"a"), XbVariant(CString(L"a")));
  EXPECT_EQ(XbVariant(), XbVariant());
  XbVariant v(true);
  v = XbVariant(std::uint32_t{8});
  EXPECT_EQ(v.GetUInt32(), 8u);
}
