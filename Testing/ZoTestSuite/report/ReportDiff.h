// ReportDiff: the row tables of a comparison of two reports, reference A
// and test B, and the judgement of each row as different, worse or better.
//
// A class row stands for one class name of A or B, a case row for one key
// "%s:%s" of class and case name. When a report holds a name twice, the
// first row of that name is compared and the later ones are not.
#pragma once

#include <vector>

#include "report/ReportData.h"

namespace TestSuite::Report {

enum EDiffRowState : unsigned int { eDiffNone = 0, eDiffDifferent = 1, eDiffWorse = 2, eDiffBetter = 3 };

// Index of a side that lacks the row.
inline constexpr unsigned int c_DiffMissing = 0xFFFFFFFF;

struct SDiffClassRow {
  CString Name;
  unsigned int IndexA = c_DiffMissing;  // into Classes of A
  unsigned int IndexB = c_DiffMissing;  // into Classes of B
  EDiffRowState State = eDiffNone;
};

struct SDiffCaseRow {
  CString Key;
  unsigned int IndexA = c_DiffMissing;  // into Cases of A
  unsigned int IndexB = c_DiffMissing;  // into Cases of B
  double TimeRatio = 1.0;               // B over A; 0 if A took no time
  float MemoryRatio = 1.0f;             // B over A; 0 if A used no memory
  EDiffRowState State = eDiffNone;
};

// The opening tag of a row: "<tr>", "<tr class=\"diff\">",
// "<tr class=\"worse\">" or "<tr class=\"better\">".
const wchar_t* GetDiffRowTag(EDiffRowState state);
// The word in the Diff column: empty, "Different", "Worse" or "Improved".
const wchar_t* GetDiffRowText(EDiffRowState state);

// One row per class name of A, then of B, sorted by name (case-sensitive,
// by UTF-16 code units), each judged. Unsuccessful counts decide first;
// warnings count only when these are equal and `bHideWarnings` is false;
// else a changed case count makes a row different. A class of one side
// only is none with `bIgnoreOneSided`, else different if it is only in A,
// and if it is only in B worse when it has unsuccessful cases or (warnings
// shown) warnings, else different.
std::vector<SDiffClassRow> BuildDiffClassRows(const SData& a, const SData& b, bool bIgnoreOneSided, bool bHideWarnings);

// One row per case key of A, then of B, sorted by key as the classes are,
// with the ratios of rows on both sides and the judgement of each row. On
// both sides the results decide: B passed where A did not is better; the
// same result with a warning lost is better; B failed where A passed is
// worse; any other change of result is different; then, with warnings
// shown, a warning gained is worse. Time and memory never judge a row. A
// case of one side only is none with `bIgnoreOneSided`; else only in A it
// is different, only in B worse if it failed, and if it passed different,
// unless warnings are hidden and it has a warning: then it is worse.
std::vector<SDiffCaseRow> BuildDiffCaseRows(const SData& a, const SData& b, bool bIgnoreOneSided, bool bHideWarnings);

}  // namespace TestSuite::Report
