// discovery_Warnings: the texts of the messages a COutRecorder caught during
// discovery, each of which must be a warning, printed in c_GOLDENROD.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/ZoColorRGBA.h"
#include "services_COutRecorder.h"

inline std::vector<std::wstring> DiscoveryWarnings(const COutRecorder& recorder) {
  std::vector<std::wstring> texts;
  for (const COutRecorder::SMessage& message : recorder.Messages()) {
    EXPECT_TRUE(message.bHasColor) << message.sText.ToUtf8();
    EXPECT_EQ(message.color.GetValue(), ZoColorRGBA::c_GOLDENROD.GetValue()) << message.sText.ToUtf8();
    EXPECT_FALSE(message.bBold) << message.sText.ToUtf8();
    texts.push_back(message.sText.Str());
  }
  return texts;
}
