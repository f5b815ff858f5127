// RunCaseInBlock: what the block says after the case it describes has run,
// whatever the block held before, and what the test class sees meanwhile.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "CaseBlock.h"
#include "RunTestClasses.h"
#include "foundation/XbDateTime.h"
#include "foundation/XbSingleton.h"
#include "foundation/ZoDebugSerializationGeneric.h"
#include "foundation/ZoTraceEventManager.h"
#include "heap_TrackerTestKit.h"
#include "run/CaseExecution.h"
#include "run/RunClock.h"
#include "services/Utils.h"

using namespace TestSuite;
using TestSupport::BlockOutput;
using TestSupport::RunCaseThroughBlock;

namespace {

// What the class below saw while its subtest ran.
CString& seenOutputDirectory() {
  static CString directory;
  return directory;
}

// Subtest "look" notes its debug output directory and records the trace
// event "looked".
class RcbObserver : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RcbObserver)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"look"); }
  EResult OnRunSubtest(unsigned int) override {
    seenOutputDirectory() = ZoDebugSerializationGeneric::GetOutputDirectory();
    XbSingleton<ZoTraceEventManager>::GetInstance().Record(L"looked");
    return eSuccess;
  }
};

XB_IMPLEMENT_DYNCREATE(RcbObserver, ZoUnitTest);

// A block whose outcome fields hold what an earlier case left there.
std::unique_ptr<SWorkBlock> usedBlock(const CString& className, const CString& caseName) {
  auto block =
      TestSupport::MakeCaseBlock(className, caseName, SRunOptions(), L"/nonexistent/", XbDateTime::Now().GetValue());
  block->eResult = Run::eCaseError;
  block->iMemoryDelta = 77;
  block->uiAllocCount = 5;
  block->uiMemoryPeak = 1000;
  block->dTime = 3.5;
  AppendBlockOutput(*block, L"left over\n");
  return block;
}

}  // namespace

TEST(RunCaseInBlock, AnUnknownClassLeavesOnlyNotFoundInAUsedBlock) {
  auto block = usedBlock(L"NoSuchClassAnywhere", L"x");
  RunCaseInBlock(*block, SystemRunClock());
  EXPECT_EQ(block->eResult, Run::eCaseNotFound);
  EXPECT_EQ(block->uiOutputLength, 0u);
  EXPECT_EQ(BlockOutput(*block), CString());
  EXPECT_EQ(block->iMemoryDelta, 0);
  EXPECT_EQ(block->uiAllocCount, 0u);
  EXPECT_EQ(block->uiMemoryPeak, 0u);
  EXPECT_EQ(block->dTime, 0.0);
}

TEST(RunCaseInBlock, AnUnknownCaseOfAKnownClassIsNotFound) {
  const auto block = RunCaseThroughBlock(RunTestClasses::sc_szResults, L"gone");
  EXPECT_EQ(block->eResult, Run::eCaseNotFound);
  EXPECT_EQ(block->dTime, 0.0);
}

TEST(RunCaseInBlock, TheOutputOfTheCaseReplacesWhatTheBlockHeld) {
  auto block = usedBlock(RunTestClasses::sc_szResults, L"r1");
  RunCaseInBlock(*block, SystemRunClock());
  EXPECT_EQ(block->eResult, Run::eCaseOk);
  EXPECT_EQ(BlockOutput(*block), CString(L"INFO:  subtest 1\n"));
  EXPECT_EQ(block->iMemoryDelta, 0);  // the heap is not tracked
}

TEST(RunCaseInBlock, TheCaseWritesItsDebugOutputIntoADirectoryOfItsOwn) {
  const std::uint64_t runDate = XbDateTime::Now().GetValue();
  auto block = TestSupport::MakeCaseBlock(L"RcbObserver", L"look", SRunOptions(), L"/nonexistent/", runDate);
  RunCaseInBlock(*block, SystemRunClock());
  EXPECT_EQ(block->eResult, Run::eCaseOk);
  EXPECT_EQ(seenOutputDirectory(), Utils::MakeCaseOutputDirectory(L"RcbObserver", L"look", XbDateTime(runDate), 0, 1));
}

TEST(RunCaseInBlock, TraceEventsOfTheCaseAreFlushedWhenItEnds) {
  ZoTraceEventManager& manager = XbSingleton<ZoTraceEventManager>::GetInstance();
  std::vector<CString> flushed;
  manager.SetSink([&flushed](const XbArray<ZoTraceEventManager::SEvent>& events) {
    for (const auto& event : events) flushed.push_back(event.sName);
  });
  const auto block = RunCaseThroughBlock(L"RcbObserver", L"look");
  manager.SetSink(nullptr);
  EXPECT_EQ(flushed, std::vector<CString>{CString(L"looked")});
  EXPECT_EQ(manager.GetPendingCount(), 0u);
}

TEST(RunCaseInBlock, ALeakIsMeasuredAndDumpedOnlyWhenAsked) {
  HEAP_SKIP_WITHOUT_INTERCEPTION();
  SRunOptions options;
  options.bTrackHeap = true;
  const auto quiet = RunCaseThroughBlock(RunTestClasses::sc_szMemory, L"leak100", options);
  EXPECT_EQ(quiet->eResult, Run::eCaseOk);
  EXPECT_EQ(quiet->iMemoryDelta, 100);
  EXPECT_EQ(BlockOutput(*quiet).Find(L"Dump()"), -1);
  options.bDumpLeaks = true;
  const auto dumped = RunCaseThroughBlock(RunTestClasses::sc_szMemory, L"leak100", options);
  EXPECT_EQ(dumped->iMemoryDelta, 100);
  EXPECT_NE(BlockOutput(*dumped).Find(L"\t\tINFO:  Dump()...\n"), -1);
}
