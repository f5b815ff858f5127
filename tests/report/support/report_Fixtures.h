// report_Fixtures: the fixed report record of the report tests, a few small
// records for single rules, and the files they are compared with.
#pragma once

#include <string>
#include <vector>

#include "Xmllint.h"
#include "report/ReportData.h"

namespace ReportTest {

// A report of four classes and five cases (ids 0, 1, 2, 4, 5; row 3 was
// cancelled) with both kinds of build information, every result group,
// a warning with a leak, contacts, escaped dumps and German letters. The
// golden files are written from it.
TestSuite::Report::SData MakeFixedReport();

// A record without build information, classes or cases: only the texts
// that every report has.
TestSuite::Report::SData MakeEmptyReport();

// Appends a class row and returns it.
TestSuite::Report::SClassData& AddClass(TestSuite::Report::SData& data, const wchar_t* name, unsigned int cases,
                                        unsigned int failures, unsigned int errors, unsigned int warnings);
// Appends a case row and returns it.
TestSuite::Report::SCaseData& AddCase(TestSuite::Report::SData& data, unsigned int id, const wchar_t* className,
                                      const wchar_t* caseName, TestSuite::Run::ECaseResult result,
                                      bool warning = false);

// One case of a made-up report: its class, its name and its result.
struct SCaseRow {
  const wchar_t* sClass;
  const wchar_t* sCase;
  TestSuite::Run::ECaseResult eResult;
};
// MakeEmptyReport with one case for each row, in order, numbered from 0.
TestSuite::Report::SData MakeReportOfCases(const std::vector<SCaseRow>& rows);

// The whole file as bytes; empty if it cannot be read.
std::string ReadBytes(const CString& path);
// Lines of a text without their "\n".
std::vector<std::string> SplitLines(const std::string& text);
// Whether `part` occurs in `text`.
bool Contains(const std::string& text, const std::string& part);
// How often `needle` occurs in `text`.
std::size_t CountOf(const std::string& text, const std::string& needle);

// Compares `actual` byte for byte with tests/report/golden/<name>. With
// ZO_UPDATE_GOLDEN=1 in the environment the golden file is written instead.
void ExpectGoldenBytes(const std::string& name, const std::string& actual);

using TestSupport::RunXmllint;
using TestSupport::ValidateJUnitFile;

}  // namespace ReportTest
