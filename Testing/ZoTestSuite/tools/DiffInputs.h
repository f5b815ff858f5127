// DiffInputs: the loader that gives every diff mode its two reports, the
// base and the one compared with it.
#pragma once

#include "ZoTestSuite.h"
#include "report/ReportData.h"

namespace TestSuite {

// Loads the two XML reports of `setup.diffInputs` into `first` (the base)
// and `second`. False, after one uncoloured line that says why, when there
// are not exactly two inputs, when either file is missing (both are
// checked before anything is loaded), or when either does not load.
bool LoadDiffInputs(const SSetup& setup, Report::SData& first, Report::SData& second);

}  // namespace TestSuite
