// ReportNames: the file names of reports. A report whose build information
// names a source revision is called after that revision and the begin of its
// run ("Report-<revision>-[<date>]"), which ties archived reports to what
// they tested; without a revision it is called after the date alone.
#pragma once

#include <cstdint>
#include <optional>

#include "report/ReportData.h"

namespace TestSuite::Report {

// The revision that the report's build came from: Changeset of PscmInfo if
// present, else LastChangedRev of SvnInfo if present, read as a signed
// 64-bit decimal number (leading white space skipped, reading stops at the
// first other character). No value without build information, without
// digits, or when the number is out of range.
std::optional<std::int64_t> GetRevision(const SData& data);

// "2021-05-04 12:34:56" becomes "2021.05.04-12.34.56": every '-' and ':' a
// '.', every blank a '-'.
CString MakeFileDate(const CString& date);

// "Report-%d-[%s]" with the revision (its low 32 bits) and the file date of
// DateBegin, then "-T[%s]" with RunTag if there is one, taken as it stands.
// No value without a revision.
std::optional<CString> GetArchiveName(const SData& data);

// Where a run's report goes: `requested` as it stands if it is not empty;
// else in the default report directory (the documents directory, then
// "ZoTestSuite/Reports/", made level by level), named after GetArchiveName
// or else "Report-[<file date of DateBegin>]", with "." and `extension`.
CString ResolveReportPath(const CString& requested, const SData& data, const wchar_t* extension);

}  // namespace TestSuite::Report
