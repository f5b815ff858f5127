// CHeapWorkBuffer: one block on the heap at the run options' defaults,
// the same block for reading and writing, with nothing to release.
#include "run/WorkBuffer.h"

#include <gtest/gtest.h>

#include "ZoTestSuite.h"

using namespace TestSuite;

TEST(CHeapWorkBuffer, StartsAtTheDefaultsWithAnUnknownResultAndNoOutput) {
  CHeapWorkBuffer buffer;
  const SBufferAccess access = buffer.GetReadAccess();
  ASSERT_NE(access.pBlock, nullptr);
  EXPECT_EQ(access.pBlock->eResult, Run::eCaseUnknown);
  EXPECT_EQ(access.pBlock->uiOutputLength, 0u);
  EXPECT_EQ(LoadBlockText(access.pBlock->sClassName, SWorkBlock::sc_uiTextUnits), CString());
  const SRunOptions options = LoadRunOptions(*access.pBlock);
  const SRunOptions defaults;
  EXPECT_EQ(options.bReportMemLeak, defaults.bReportMemLeak);
  EXPECT_EQ(options.bAssertDialog, defaults.bAssertDialog);
  EXPECT_EQ(options.uiRepeatCount, defaults.uiRepeatCount);
  EXPECT_EQ(options.uiTimeOutSec, defaults.uiTimeOutSec);
  EXPECT_EQ(options.bShowTimes, defaults.bShowTimes);
  EXPECT_FALSE(options.oObserveID.has_value());
}

TEST(CHeapWorkBuffer, ReadingSeesWhatWasWrittenWithNothingToRelease) {
  CHeapWorkBuffer buffer;
  {
    const SBufferAccess write = buffer.GetWriteAccess();
    EXPECT_EQ(write.hMapping, nullptr);
    write.pBlock->eResult = Run::eCaseCanceled;
  }
  const SBufferAccess read = buffer.GetReadAccess();
  EXPECT_EQ(read.hMapping, nullptr);
  EXPECT_EQ(read.pBlock, buffer.GetWriteAccess().pBlock);
  EXPECT_EQ(read.pBlock->eResult, Run::eCaseCanceled);
}

TEST(CHeapWorkBuffer, EachBufferHasABlockOfItsOwn) {
  CHeapWorkBuffer first, second;
  EXPECT_NE(first.GetReadAccess().pBlock, second.GetReadAccess().pBlock);
}
