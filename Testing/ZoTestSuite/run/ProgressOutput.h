// Progress and summary output: what a user sees of a run, printed through
// COut by the thread that called Run::Run.
#pragma once

#include "ZoTestSuite.h"

namespace TestSuite {

using RowList = XbArray<SCaseResult*>;

// The class heading when the class changes, then the head of the case's
// line; the result completes the line.
void PrintCaseHead(const SRunOptions& options, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
                   const RowList& list, unsigned int position);
// The result text in its colour, time and tags, the line end, then the
// case's output as it stands.
void PrintCaseResult(const SCaseResult& row, bool bShowTimes, bool bShowThreadInfo);
// "0 s", or the value with `digits` decimals in ns, µs, ms or s.
CString FormatTime(double seconds, int digits);
void PrintSummary(const XbArray<SUnitTest>& classes, bool bShowTimes, const SRunStatistics& statistics);

}  // namespace TestSuite
