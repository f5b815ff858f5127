// CollectFilterStages: selection file and pattern filters over the scanned
// list of test classes.
//
// With a selection file or filters the stages work on a CTree over the list:
// the selection table (CSelectionStore::Read, then ComputeFilterTable with
// the class-and-case slot only), the filter table (ComputeFilterTable with
// all five slots on ApplyMultiplePatternFilters), the case-by-case
// combination of both (a selection's exclude is final, a non-neutral filter
// result replaces everything else) and PurgeTestCases with neutral cases
// dropped. Those stages plug in below, where the list is still passed
// through unchanged.
#include "CollectFilterStages.h"

namespace TestSuite {

void applySelectionAndFilters(XbArray<SUnitTest>& unitTests, const SCollectOptions& options) {
  if (options.sSelectionFile.IsEmpty() && options.filters.IsEmpty()) return;
  // Tree-based selection and filter stages: not connected yet, the list
  // passes through unchanged.
  (void)unitTests;
}

}  // namespace TestSuite
