// RunCaseInBlock: the heart of case execution. It creates the test object,
// measures it under a heap tracker and writes the outcome into the block;
// the same code runs in process and in a child process.
#include "foundation/IDebugging.h"
#include "foundation/UnitTestFactory.h"
#include "foundation/XbSingleton.h"
#include "foundation/XbStream.h"
#include "foundation/ZoDebugSerializationGeneric.h"
#include "foundation/ZoTimeTracker.h"
#include "foundation/ZoTraceEventManager.h"
#include "run/CaseExecution.h"
#include "run/RunClock.h"
#include "services/CHeapTracker.h"
#include "services/Utils.h"

namespace TestSuite {

namespace {

Run::ECaseResult mapResult(int result) {
  switch (result) {
    case ZoUnitTest::eDataError: return Run::eCaseNoInput;
    case ZoUnitTest::eSuccess: return Run::eCaseOk;
    case ZoUnitTest::eFailure: return Run::eCaseError;
    case ZoUnitTest::eException: return Run::eCaseException;
    case ZoUnitTest::eDifferentOutput: return Run::eCaseDifferent;
    default: return Run::eCaseUnknown;
  }
}

void applyDebugOptions(ZoUnitTest& test, const SRunOptions& options) {
  auto* debugging = dynamic_cast<IDebugging*>(&test);
  if (!debugging) return;
  const std::pair<int, bool> keys[] = {
      {1, options.bDebugOption1}, {2, options.bDebugOption2}, {0, options.bDebugOption0}};
  for (const auto& [key, value] : keys)
    if (debugging->SupportsOption(key)) debugging->SetOption(key, value);
}

// Warm-up outside the measurement, then the subtest under the clock and the
// tracker. Any exception of the language gives eCaseException.
Run::ECaseResult runMeasured(ZoUnitTest& test, const CString& caseName, const SRunOptions& options,
                             CHeapTracker& tracker, IRunClock& clock, double& seconds) {
  try {
    applyDebugOptions(test, options);
    tracker.Deactivate();
    test.WarmUp();
    ZoTimeTracker::PreallocateStaticData();
    ZoTraceEventManager::PreallocateStaticData();
    tracker.Activate();
    const std::optional<unsigned int> index = FindSubtestIndex(test, caseName);
    if (!index) return Run::eCaseNotFound;
    const std::int64_t start = clock.Now();
    const int result = test.RunUnitTest(*index);
    seconds = clock.SecondsSince(start);
    return mapResult(result);
  } catch (...) { return Run::eCaseException; }
}

// The tracker's dump as info lines.
CString makeLeakDump(CHeapTracker& tracker) {
  XbStreamWriteASCIIStringT<CString> dumpStream;
  tracker.Dump(dumpStream);
  CString text(L"\t\tINFO:  Dump()...\n");
  const CString& dump = dumpStream.GetString();
  int position = 0;
  for (CString line = dump.Tokenize(L"\r\n", position); position >= 0; line = dump.Tokenize(L"\r\n", position))
    text.AppendFormat(L"\t\tINFO:  %s\n", line);
  return text;
}

}  // namespace

void RunCaseInBlock(SWorkBlock& block, IRunClock& clock) {
  ClearBlockOutcome(block);
  Run::ECaseResult result = Run::eCaseUnknown;

  const CString className = LoadBlockText(block.sClassName, SWorkBlock::sc_uiTextUnits);
  const CString caseName = LoadBlockText(block.sCaseName, SWorkBlock::sc_uiTextUnits);
  const CString dataDir = LoadBlockText(block.sDataDir, SWorkBlock::sc_uiTextUnits);
  const XbDateTime runDate(block.uiRunDate);
  const SRunOptions options = LoadRunOptions(block);

  ZoDebugSerializationGeneric::SetThreadLocalOutputDirectory(
      Utils::MakeCaseOutputDirectory(className, caseName, runDate, block.uiRepetition, options.uiRepeatCount));

  CHeapTracker tracker(false, false);
  if (options.bTrackHeap) tracker.Initialize();
  if (options.oObserveID) tracker.ObserveID(*options.oObserveID);
  if (options.oObserveSize) tracker.ObserveSize(*options.oObserveSize);
  auto stream = std::make_unique<XbStreamWriteASCIIStringT<CString>>();

  std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(className);
  double seconds = 0.0;
  if (!test) {
    result = Run::eCaseNotFound;
  } else {
    test->SetMessageStream(*stream);
    test->SetDataDirectory(dataDir);
    test->InitSubtests();
    result = runMeasured(*test, caseName, options, tracker, clock, seconds);
  }
  block.dTime = seconds;

  XbSingleton<ZoTraceEventManager>::GetInstance().Flush();
  tracker.Deactivate();
  AppendBlockOutput(block, stream->GetString());

  tracker.Activate();
  test.reset();
  stream.reset();
  tracker.Deactivate();

  if (options.bTrackHeap) {
    block.iMemoryDelta = tracker.GetCurrentAlloc();
    block.uiAllocCount = tracker.GetMallocCount() + tracker.GetReallocCount();
    block.uiMemoryPeak = static_cast<std::uint64_t>(tracker.GetCurrentMax());
  }
  if (options.bDumpLeaks && options.bTrackHeap && block.iMemoryDelta != 0)
    AppendBlockOutput(block, makeLeakDump(tracker));
  block.eResult = result;
}

}  // namespace TestSuite
