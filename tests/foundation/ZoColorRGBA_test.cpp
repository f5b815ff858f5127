#include "foundation/ZoColorRGBA.h"

#include <gtest/gtest.h>

TEST(ZoColorRGBA, ChannelsAndPackedValue) {
  constexpr ZoColorRGBA c(0x12, 0x34, 0x56, 0x78);
  static_assert(c.GetValue() == 0x12345678u);
  EXPECT_EQ(c.R(), 0x12);
  EXPECT_EQ(c.G(), 0x34);
  EXPECT_EQ(c.B(), 0x56);
  EXPECT_EQ(c.A(), 0x78);
  EXPECT_EQ(c.GetValue(), 0x12345678u);
}

TEST(ZoColorRGBA, AlphaDefaultsToOpaqueAndDefaultIsTransparentBlack) {
  EXPECT_EQ(ZoColorRGBA(1, 2, 3).A(), 255);
  EXPECT_EQ(ZoColorRGBA(1, 2, 3).GetValue(), 0x010203FFu);
  EXPECT_EQ(ZoColorRGBA().GetValue(), 0u);
}

TEST(ZoColorRGBA, NamedColours) {
  EXPECT_EQ(ZoColorRGBA::c_RED.GetValue(), 0xFF0000FFu);
  EXPECT_EQ(ZoColorRGBA::c_GREEN.GetValue(), 0x008000FFu);
  EXPECT_EQ(ZoColorRGBA::c_GOLDENROD.GetValue(), 0xDAA520FFu);
  EXPECT_EQ(ZoColorRGBA::c_GRAY.GetValue(), 0x808080FFu);
  EXPECT_EQ(ZoColorRGBA::c_BLUE.GetValue(), 0x0000FFFFu);
  EXPECT_EQ(ZoColorRGBA::c_DARKBLUE.GetValue(), 0x00008BFFu);
}

TEST(ZoColorRGBA, EqualityComparesAllFourChannels) {
  EXPECT_EQ(ZoColorRGBA(255, 0, 0), ZoColorRGBA::c_RED);
  EXPECT_FALSE(ZoColorRGBA(255, 0, 0, 254) == ZoColorRGBA::c_RED);
  EXPECT_FALSE(ZoColorRGBA::c_BLUE == ZoColorRGBA::c_DARKBLUE);
}
