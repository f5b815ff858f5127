// AllocationScriptTest: each "*.alloc" file of the class's directory is a
// script for RunAllocationScript. The subtest passes when the script runs
// through; what it did to the heap is what a run with --track-heap shows,
// and a script that keeps a block shows as a leak there.
#include "AllocationScript.h"
#include "TextFiles.h"

class AllocationScriptTest : public ZoUnitTestFileBased {
  XB_DECLARE_DYNCREATE(AllocationScriptTest)

  AllocationScriptTest() : ZoUnitTestFileBased(L"*.alloc") {}

 protected:
  EResult OnRunSubtest(unsigned int index) override {
    const std::optional<std::string> script = Showcase::ReadTextFile(GetFilePath(index));
    if (!script) return eDataError;
    const Showcase::SScriptOutcome outcome = Showcase::RunAllocationScript(*script);
    if (!outcome.bOk) {
      Error(L"%S", outcome.sError);
      return eFailure;
    }
    Info(L"%S, at most %S held at once", Showcase::Counted(outcome.uiAllocations, "allocation"),
         Showcase::Counted(outcome.uiPeakBytes, "byte"));
    if (outcome.uiKeptBytes != 0)
      Info(L"%S kept on purpose and never freed", Showcase::Counted(outcome.uiKeptBytes, "byte"));
    return eSuccess;
  }
};

XB_IMPLEMENT_DYNCREATE(AllocationScriptTest, ZoUnitTestFileBased);
