// The report output of a run: the last stage of Run::Run.
#pragma once

#include "ZoTestSuite.h"

namespace TestSuite {

// Writes the XML and HTML reports that the setup asks for; without either,
// nothing happens and no report data is built.
void WriteRunReports(const SSetup& setup, const XbArray<SUnitTest>& classes, const Run::SResult& result);

}  // namespace TestSuite
