// CollectFilterStages: the stage of collection that narrows the scanned,
// sorted list of test classes by the selection file and the pattern filters.
#pragma once

#include "ZoTestSuiteTree.h"

namespace TestSuite {

// Applies `options.sSelectionFile`, `options.eSelectionMode`,
// `options.filters` and `options.bFullMatch` to `unitTests`, which is sorted
// by class name and stays so. With neither a selection file nor filters the
// list is left as it is. The case limit is not applied here.
void applySelectionAndFilters(XbArray<SUnitTest>& unitTests, const SCollectOptions& options);

}  // namespace TestSuite
