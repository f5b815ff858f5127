// The class and case tables of the diff page.
#include "report/ReportDiffTables.h"

#include <algorithm>

#include "report/HtmlReportWriter.h"

namespace TestSuite::Report {

namespace {

using Utils::CMarkupWriter;

// A cell of one side: formatted when the side has the row, else empty.
template <typename Item, typename Value>
CString sideCell(const XbArray<Item>& items, unsigned int index, const wchar_t* format, Value Item::*field) {
  return index == c_DiffMissing ? CString() : FormatString(format, items[index].*field);
}

unsigned int unsuccessful(const SClassData& row) { return row.CasesTotal - row.Successful; }

CString unsuccessfulCell(const SData& data, unsigned int index) {
  return index == c_DiffMissing ? CString() : FormatString(L"%d", unsuccessful(data.Classes[index]));
}

void writeClassRow(CMarkupWriter& writer, const SData& a, const SData& b, const SDiffClassRow& row) {
  const SClassData& shown = row.IndexA != c_DiffMissing ? a.Classes[row.IndexA] : b.Classes[row.IndexB];
  writer.WriteLineOpen(GetDiffRowTag(row.State));
  writer.WriteElement(L"td", shown.Name);
  writer.WriteElement(L"td", sideCell(a.Classes, row.IndexA, L"%d", &SClassData::CasesTotal));
  writer.WriteElement(L"td", sideCell(b.Classes, row.IndexB, L"%d", &SClassData::CasesTotal));
  writer.WriteElement(L"td", unsuccessfulCell(a, row.IndexA));
  writer.WriteElement(L"td", unsuccessfulCell(b, row.IndexB));
  writer.WriteElement(L"td", sideCell(a.Classes, row.IndexA, L"%d", &SClassData::Warnings));
  writer.WriteElement(L"td", sideCell(b.Classes, row.IndexB, L"%d", &SClassData::Warnings));
  writer.WriteElement(L"td", MakeContactCell(shown));
  writer.WriteLineClose(L"</tr>");
}

// A cell of the case table that only a case on both sides fills.
CString ratioCell(const SDiffCaseRow& row, double ratio) {
  const bool bothSides = row.IndexA != c_DiffMissing && row.IndexB != c_DiffMissing;
  return bothSides ? FormatString(L"%f", ratio) : CString();
}

CString labelCell(const SData& data, unsigned int index) {
  return index == c_DiffMissing ? CString() : GetResultLabel(data.Cases[index].ResultType);
}

CString messageCell(const SData& data, unsigned int index) {
  return index == c_DiffMissing ? CString() : data.Cases[index].Message;
}

void writeCaseRow(CMarkupWriter& writer, const SData& a, const SData& b, const SDiffCaseRow& row) {
  const SCaseData& shown = row.IndexA != c_DiffMissing ? a.Cases[row.IndexA] : b.Cases[row.IndexB];
  writer.WriteLineOpen(GetDiffRowTag(row.State));
  writer.WriteElement(L"td", GetDiffRowText(row.State));
  writer.WriteElement(L"td", sideCell(a.Cases, row.IndexA, L"%d", &SCaseData::Id));
  writer.WriteElement(L"td", sideCell(b.Cases, row.IndexB, L"%d", &SCaseData::Id));
  writer.WriteElement(L"td", shown.ClassName);
  writer.WriteElement(L"td", CMarkupWriter::Clean(shown.CaseName));
  writer.WriteElement(L"td", sideCell(a.Cases, row.IndexA, L"%f", &SCaseData::Time));
  writer.WriteElement(L"td", sideCell(b.Cases, row.IndexB, L"%f", &SCaseData::Time));
  writer.WriteElement(L"td", ratioCell(row, row.TimeRatio));
  writer.WriteElement(L"td", sideCell(a.Cases, row.IndexA, L"%I64u", &SCaseData::Memory));
  writer.WriteElement(L"td", sideCell(b.Cases, row.IndexB, L"%I64u", &SCaseData::Memory));
  writer.WriteElement(L"td", ratioCell(row, static_cast<double>(row.MemoryRatio)));
  writer.WriteElement(L"td", labelCell(a, row.IndexA));
  writer.WriteElement(L"td", labelCell(b, row.IndexB));
  writer.WriteElement(L"td", messageCell(a, row.IndexA));
  writer.WriteElement(L"td", messageCell(b, row.IndexB));
  writer.WriteLineClose(L"</tr>");
}

const wchar_t* const c_CaseHeads[] = {
    L"<th>Diff</th>",          L"<th>Id&nbsp;A</th>",   L"<th>Id&nbsp;B</th>",      L"<th>Class</th>",
    L"<th>Case</th>",          L"<th>Time&nbsp;A</th>", L"<th>Time&nbsp;B</th>",    L"<th>Time&nbsp;(B/A)</th>",
    L"<th>Mem&nbsp;A</th>",    L"<th>Mem&nbsp;B</th>",  L"<th>Mem&nbsp;(B/A)</th>", L"<th>Result&nbsp;A</th>",
    L"<th>Result&nbsp;B</th>", L"<th>Info&nbsp;A</th>", L"<th>Info&nbsp;B</th>"};

}  // namespace

void WriteDiffClassTable(CMarkupWriter& writer, const SData& a, const SData& b,
                         const std::vector<SDiffClassRow>& rows) {
  const auto judged = [](const SDiffClassRow& row) { return row.State != eDiffNone; };
  if (std::none_of(rows.begin(), rows.end(), judged)) return;
  writer.WriteElement(L"h2", L"Class Diff");
  writer.WriteLineOpen(L"<table id=\"testclasses\" class=\"sortable\">");
  WriteHtmlHeadRow(writer, {L"Class", L"Cases&nbsp;A", L"Cases&nbsp;B", L"Unsuccessful&nbsp;A", L"Unsuccessful&nbsp;B",
                            L"Warnings&nbsp;A", L"Warnings&nbsp;B", L"Contact"});
  for (const SDiffClassRow& row : rows) {
    if (judged(row)) writeClassRow(writer, a, b, row);
  }
  writer.WriteLineClose(L"</table>");
}

void WriteDiffCaseTable(CMarkupWriter& writer, const SData& a, const SData& b, const std::vector<SDiffCaseRow>& rows) {
  writer.WriteElement(L"h2", L"Case Diff");
  writer.WriteLineOpen(L"<table id=\"testcases\" class=\"sortable\">");
  writer.WriteLineOpen(L"<tr>");
  for (const wchar_t* head : c_CaseHeads) writer.WriteLine(head);
  writer.WriteLineClose(L"</tr>");
  for (const SDiffCaseRow& row : rows) writeCaseRow(writer, a, b, row);
  writer.WriteLineClose(L"</table>");
}

}  // namespace TestSuite::Report
