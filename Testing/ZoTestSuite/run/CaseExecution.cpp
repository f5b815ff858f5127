// ExecuteCase: one row through its work block, in this process or in a
// child, and the options that the case's parameters resolve to.
#include "run/CaseExecution.h"

#include "run/external/ExternalExecution.h"

namespace TestSuite {

namespace {

bool paramAsBool(const XbVariant& value, bool fallback) { return value.IsBool() ? value.GetBool() : fallback; }

unsigned int paramAsUInt32(const XbVariant& value, unsigned int fallback) {
  return value.IsUInt32() ? value.GetUInt32() : fallback;
}

// Fills the block for one case; false if a name does not fit, in which case
// the block says 6 and the row stays as it is.
bool writeCase(SWorkBlock& block, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
               const SRunOptions& options, const SCaseResult& row, std::uint64_t runDate) {
  if (!StoreBlockText(block.sClassName, SWorkBlock::sc_uiTextUnits, unitTest.Name) ||
      !StoreBlockText(block.sCaseName, SWorkBlock::sc_uiTextUnits, testCase.Name) ||
      !StoreBlockText(block.sDataDir, SWorkBlock::sc_uiTextUnits, unitTest.DataDir)) {
    block.eResult = Run::eCaseNotFound;
    return false;
  }
  StoreRunOptions(block, options);
  // A child that never takes the case must not leave the figures of the
  // case before in its row.
  ClearBlockOutcome(block);
  block.uiRepetition = row.uiRepetition;
  block.uiRunDate = runDate;
  return true;
}

void readOutcome(const SWorkBlock& block, SCaseResult& row) {
  row.eResult = static_cast<Run::ECaseResult>(block.eResult);
  row.iMemoryDelta = block.iMemoryDelta;
  row.uiAllocCount = block.uiAllocCount;
  row.uiMemoryPeak = block.uiMemoryPeak;
  row.dTime = block.dTime;
  row.sOutput = LoadBlockText(block.output, SWorkBlock::sc_uiOutputUnits);
}

}  // namespace

SRunOptions ResolveCaseOptions(const SRunOptions& options, const SUnitTest::SCase& testCase) {
  SRunOptions resolved = options;
  for (const auto& [key, value] : testCase.Params) {
    if (key == L"ReportMemLeak") resolved.bReportMemLeak = paramAsBool(value, resolved.bReportMemLeak);
    else if (key == L"TimeOutSec") resolved.uiTimeOutSec = paramAsUInt32(value, resolved.uiTimeOutSec);
    else if (key == L"External") resolved.bExternal = paramAsBool(value, resolved.bExternal);
    else if (key == L"Isolated") resolved.bIsolated = paramAsBool(value, resolved.bIsolated);
    else if (key == L"Parallel") resolved.bParallel = paramAsBool(value, resolved.bParallel);
  }
  return resolved;
}

IWorkBuffer& AcquireWorkBuffer(const CString& sDataDir, const SRunOptions& options, SCaseContext& context) {
  if (options.bExternal) return AcquireSharedWorkBuffer(sDataDir, options, context);
  if (!context.heapBuffer) context.heapBuffer = std::make_unique<CHeapWorkBuffer>();
  return *context.heapBuffer;
}

void ExecuteCase(const SRunContext& run, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
                 SCaseContext& context, SCaseResult& row) {
  const SRunOptions resolved = ResolveCaseOptions(run.options, testCase);
  IWorkBuffer& buffer = AcquireWorkBuffer(run.setup.sDataDir, resolved, context);
  {
    SBufferAccess access = buffer.GetWriteAccess();
    if (!writeCase(*access.pBlock, unitTest, testCase, resolved, row, context.uiRunDate)) return;
  }
  if (resolved.bExternal) {
    RunCaseInChild(context, resolved.uiTimeOutSec, run.callbacks, row);
  } else {
    SBufferAccess access = buffer.GetWriteAccess();
    RunCaseInBlock(*access.pBlock, *context.pClock);
  }
  {
    SBufferAccess access = buffer.GetReadAccess();
    readOutcome(*access.pBlock, row);
  }
  row.bWarning = resolved.bReportMemLeak && row.iMemoryDelta > 0;
}

}  // namespace TestSuite
