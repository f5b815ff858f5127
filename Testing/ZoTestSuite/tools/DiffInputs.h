// DiffInputs: the two reports of every diff mode, the base and the one
// compared with it: their loader, and the name of the file a mode derives
// from them.
#pragma once

#include "ZoTestSuite.h"
#include "report/ReportData.h"

namespace TestSuite {

// Loads the two XML reports of `setup.diffInputs` into `first` (the base)
// and `second`. False, after one uncoloured line that says why, when there
// are not exactly two inputs, when either file is missing (both are
// checked before anything is loaded), or when either does not load.
bool LoadDiffInputs(const SSetup& setup, Report::SData& first, Report::SData& second);

// The result file of a diff mode: `setup.sDiffOutputPath` if it is not
// empty, else "<prefix>-[<first>][<second>]<extension>" in the directory of
// the first input, named after both inputs without their extensions. Needs
// two inputs.
CString GetDiffOutputPath(const SSetup& setup, const wchar_t* prefix, const wchar_t* extension);

}  // namespace TestSuite
