// SelectionGenerators: the two tool modes that turn reports into selection
// files, so that a later run repeats exactly the cases that matter: the
// failed ones of one report, or those whose result changed between two.
//
// Every selection made here selects what it lists and nothing else: the
// file's default and each class's default are None, each listed case has
// select="true". Classes stand in the order of their first listed case,
// cases in the order of the report.
#pragma once

#include "ZoTestSuite.h"

namespace TestSuite {

// What a generator did, for a front end that tells the user and sets its
// exit status. The exported modes themselves stay silent about it.
struct SSelectionFileOutcome {
  bool bLoaded = false;          // false: the input did not load (the loader said why), or no mode was asked for
  unsigned int uiCaseCount = 0;  // cases that the selection lists
  CString sPath;                 // the file that was written; empty when none was
};

// GenerateSelectionFileFromReport, with its outcome.
SSelectionFileOutcome WriteSelectionOfFailedCases(const SSetup& setup);
// GenerateDiffSelection, with its outcome.
SSelectionFileOutcome WriteDiffSelection(const SSetup& setup);

// The file that the diff selection writes: `setup.sDiffOutputPath` if it is
// not empty, else "DiffSelection-[first][second].xml" beside the first
// input, named after the two inputs without their extensions. Needs two
// inputs.
CString GetDiffSelectionPath(const SSetup& setup);

}  // namespace TestSuite
