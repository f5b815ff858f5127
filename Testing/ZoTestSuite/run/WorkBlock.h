// The work block: the flat record through which a case is told what to do
// and tells what it did, the same in process and in shared memory, where it
// is the wire format between a parent and a child of the same build.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "foundation/CString.h"

namespace TestSuite {

struct SRunOptions;

// The run options as they lie in the block: eleven flags, the counts, the
// two optionals as a present byte directly followed by the value, and the
// two display flags. The two values lie unaligned, so they are bytes here,
// read and written through StoreRunOptions and LoadRunOptions.
struct SWorkBlockOptions {
  bool bTrackHeap;
  bool bDumpLeaks;
  bool bReportMemLeak;
  bool bExternal;
  bool bIsolated;
  bool bAssertDialog;
  bool bShowThreadInfo;
  bool bDebugOption0;
  bool bDebugOption1;
  bool bDebugOption2;
  bool bParallel;
  std::uint8_t padding0;
  std::uint32_t uiThreadCount;
  std::uint32_t uiRepeatCount;
  std::uint32_t uiTimeOutSec;
  bool bObserveID;
  std::uint8_t uiObserveID[8];
  bool bObserveSize;
  std::uint8_t uiObserveSize[8];
  bool bShowTimes;
  bool bRecordStartTime;
};

struct SWorkBlock {
  static constexpr unsigned int sc_uiTextUnits = 1024;  // 1,023 characters and a zero
  static constexpr unsigned int sc_uiOutputUnits = 1048576;
  static constexpr unsigned int sc_uiOutputLimit = 0xFFFFF;  // characters, without the zero

  char16_t sClassName[sc_uiTextUnits];
  char16_t sCaseName[sc_uiTextUnits];
  char16_t sDataDir[sc_uiTextUnits];
  std::uint32_t uiRepetition;
  std::uint8_t padding0[4];
  std::uint64_t uiRunDate;
  SWorkBlockOptions options;
  std::uint8_t padding1[4];
  std::int32_t eResult;
  std::uint8_t padding2[4];
  std::int64_t iMemoryDelta;
  std::uint64_t uiAllocCount;
  std::uint64_t uiMemoryPeak;
  double dTime;
  std::uint32_t uiOutputLength;
  char16_t output[sc_uiOutputUnits];
  std::uint8_t padding3[4];
};

static_assert(offsetof(SWorkBlock, sClassName) == 0);
static_assert(offsetof(SWorkBlock, sCaseName) == 2048);
static_assert(offsetof(SWorkBlock, sDataDir) == 4096);
static_assert(offsetof(SWorkBlock, uiRepetition) == 6144);
static_assert(offsetof(SWorkBlock, uiRunDate) == 6152);
static_assert(offsetof(SWorkBlock, options) == 6160);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, bParallel) == 6170);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, uiThreadCount) == 6172);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, uiRepeatCount) == 6176);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, uiTimeOutSec) == 6180);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, bObserveID) == 6184);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, uiObserveID) == 6185);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, bObserveSize) == 6193);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, uiObserveSize) == 6194);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, bShowTimes) == 6202);
static_assert(offsetof(SWorkBlock, options) + offsetof(SWorkBlockOptions, bRecordStartTime) == 6203);
static_assert(offsetof(SWorkBlock, eResult) == 6208);
static_assert(offsetof(SWorkBlock, iMemoryDelta) == 6216);
static_assert(offsetof(SWorkBlock, uiAllocCount) == 6224);
static_assert(offsetof(SWorkBlock, uiMemoryPeak) == 6232);
static_assert(offsetof(SWorkBlock, dTime) == 6240);
static_assert(offsetof(SWorkBlock, uiOutputLength) == 6248);
static_assert(offsetof(SWorkBlock, output) == 6252);
static_assert(offsetof(SWorkBlock, padding3) == 2103404);
static_assert(sizeof(SWorkBlock) == 2103408);

// Writes `options` into the block's option fields.
void StoreRunOptions(SWorkBlock& block, const SRunOptions& options);
// Reads the block's option fields.
SRunOptions LoadRunOptions(const SWorkBlock& block);
// The outcome of a case that has not run, or whose process was lost:
// eCaseUnknown, no output, no memory figures, no time. Touches the outcome
// fields and the output's first unit only.
void ClearBlockOutcome(SWorkBlock& block);
// Resets the block to the run options' defaults with the result eCaseUnknown and no output.
void ResetWorkBlock(SWorkBlock& block);

// Copies `text` as zero-terminated UTF-16 into `target` of `units` code
// units; false (and nothing useful written) if it does not fit.
bool StoreBlockText(char16_t* target, unsigned int units, const CString& text);
// Reads a zero-terminated UTF-16 text of at most `units` code units.
CString LoadBlockText(const char16_t* source, unsigned int units);
// Appends `text` to the block's output, cut without comment at the limit.
void AppendBlockOutput(SWorkBlock& block, const CString& text);

}  // namespace TestSuite
