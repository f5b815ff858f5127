// external_execution_BenchClasses: the trivial test class of the external
// execution benchmark. It is compiled into the benchmark itself, for the
// cases that run in process, and into a test library, for its children.
#include "ZoUnitTest.h"

// One subtest, "trivial", which passes at once.
class BenchTrivial : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(BenchTrivial)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"trivial"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(BenchTrivial, ZoUnitTest);
