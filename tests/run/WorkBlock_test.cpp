#include "run/WorkBlock.h"

#include <gtest/gtest.h>

#include "ZoTestSuite.h"
#include "run/WorkBuffer.h"

using namespace TestSuite;

TEST(WorkBlock, HeapBufferStartsAtTheDefaults) {
  CHeapWorkBuffer buffer;
  SBufferAccess access = buffer.GetReadAccess();
  EXPECT_EQ(access.hMapping, nullptr);
  EXPECT_EQ(access.pBlock->eResult, Run::eCaseUnknown);
  const SRunOptions options = LoadRunOptions(*access.pBlock);
  EXPECT_TRUE(options.bReportMemLeak);
  EXPECT_TRUE(options.bAssertDialog);
  EXPECT_TRUE(options.bShowTimes);
  EXPECT_EQ(options.uiRepeatCount, 1u);
  EXPECT_EQ(options.uiTimeOutSec, 0xFFFFFFFFu);
  EXPECT_FALSE(options.oObserveID.has_value());
}

TEST(WorkBlock, OptionsLieAtTheirOffsets) {
  auto block = std::make_unique<SWorkBlock>();
  ResetWorkBlock(*block);
  SRunOptions options;
  options.bParallel = true;
  options.uiThreadCount = 0x01020304;
  options.oObserveID = 0x1122334455667788ULL;
  options.oObserveSize = 0x99;
  options.bRecordStartTime = true;
  StoreRunOptions(*block, options);
  const auto* bytes = reinterpret_cast<const unsigned char*>(block.get());
  EXPECT_EQ(bytes[6170], 1);
  EXPECT_EQ(bytes[6172], 0x04);
  EXPECT_EQ(bytes[6184], 1);
  EXPECT_EQ(bytes[6185], 0x88);
  EXPECT_EQ(bytes[6192], 0x11);
  EXPECT_EQ(bytes[6193], 1);
  EXPECT_EQ(bytes[6194], 0x99);
  EXPECT_EQ(bytes[6203], 1);
  const SRunOptions back = LoadRunOptions(*block);
  EXPECT_EQ(back.oObserveID, options.oObserveID);
  EXPECT_EQ(back.oObserveSize, options.oObserveSize);
  EXPECT_EQ(back.uiThreadCount, options.uiThreadCount);
}

TEST(WorkBlock, TextsAreUtf16AndLimitedTo1023Units) {
  auto block = std::make_unique<SWorkBlock>();
  EXPECT_TRUE(StoreBlockText(block->sClassName, SWorkBlock::sc_uiTextUnits, CString(L"Grüße \U0001F600")));
  EXPECT_EQ(block->sClassName[6], 0xD83D);  // the surrogate pair
  EXPECT_EQ(LoadBlockText(block->sClassName, SWorkBlock::sc_uiTextUnits), CString(L"Grüße \U0001F600"));
  EXPECT_TRUE(StoreBlockText(block->sCaseName, SWorkBlock::sc_uiTextUnits, CString(L'a', 1023)));
  EXPECT_FALSE(StoreBlockText(block->sCaseName, SWorkBlock::sc_uiTextUnits, CString(L'a', 1024)));
  // 1,022 letters and one character of two units do not fit.
  EXPECT_FALSE(StoreBlockText(block->sCaseName, SWorkBlock::sc_uiTextUnits, CString(L'a', 1022) + L"\U0001F600"));
}

TEST(WorkBlock, OddCharactersCrossTheBlockAsTheyCan) {
  auto block = std::make_unique<SWorkBlock>();
  CString text;
  text += static_cast<wchar_t>(0xD800);  // a lone half of a pair stays what it is
  text += L'x';
  text += static_cast<wchar_t>(0x110000);  // beyond Unicode: the replacement character
  text += static_cast<wchar_t>(0xDC00);
  EXPECT_TRUE(StoreBlockText(block->sClassName, SWorkBlock::sc_uiTextUnits, text));
  EXPECT_EQ(block->sClassName[0], 0xD800);
  EXPECT_EQ(block->sClassName[2], 0xFFFD);
  EXPECT_EQ(block->sClassName[3], 0xDC00);
  EXPECT_EQ(block->sClassName[4], 0);
  CString back;
  back += static_cast<wchar_t>(0xD800);
  back += L'x';
  back += static_cast<wchar_t>(0xFFFD);
  back += static_cast<wchar_t>(0xDC00);
  EXPECT_EQ(LoadBlockText(block->sClassName, SWorkBlock::sc_uiTextUnits), back);
  // A first half at the very end of the units read.
  const char16_t units[] = {u'a', 0xD83D};
  EXPECT_EQ(LoadBlockText(units, 2).GetLength(), 2);
}

TEST(WorkBlock, OutputStopsAtTheLimit) {
  auto block = std::make_unique<SWorkBlock>();
  ResetWorkBlock(*block);
  AppendBlockOutput(*block, CString(L'x', 1048570));
  AppendBlockOutput(*block, CString(L"abcdefghij"));
  EXPECT_EQ(block->uiOutputLength, 1048575u);
  EXPECT_EQ(block->output[1048575], 0);
  EXPECT_EQ(LoadBlockText(block->output, SWorkBlock::sc_uiOutputUnits).Right(5), CString(L"abcde"));
}
