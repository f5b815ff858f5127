// The report diff page.
#include "report/ReportDiffWriter.h"

#include "foundation/ZoStreamFile.h"
#include "report/HtmlReportWriter.h"
#include "report/ReportDiffTables.h"
#include "report/ReportResources.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

using Utils::CMarkupWriter;

EDiffRowState differentIf(bool differs) { return differs ? eDiffDifferent : eDiffNone; }

// Worse when B has more of what should be few, better when it has fewer.
EDiffRowState judgeCount(unsigned int a, unsigned int b) {
  if (a < b) return eDiffWorse;
  if (a > b) return eDiffBetter;
  return eDiffNone;
}

void writeTextRow(CMarkupWriter& writer, const wchar_t* label, const CString& a, const CString& b) {
  WriteDiffRowText(writer, label, a, b, differentIf(!(a == b)));
}

void openSideBySideTable(CMarkupWriter& writer, const wchar_t* heading, const wchar_t* table) {
  writer.WriteElement(L"h2", heading);
  writer.WriteLineOpen(table);
  writer.WriteLine(L"<tr><th></th><th>A</th><th>B</th></tr>");
}

void writeSourceTable(CMarkupWriter& writer, const CString& pathA, const CString& pathB) {
  writer.WriteElement(L"h2", L"Diff Sources");
  writer.WriteLineOpen(L"<table id=\"diffsource\">");
  writer.WriteLine(L"<tr><th></th><th>Reference Data\"A\"</th><th>Test Data\"B\"</th></tr>");
  writer.WriteLine(FormatString(L"<tr><td>Data Source</td><td>%s</td><td>%s</td></tr>", pathA, pathB));
  writer.WriteLineClose(L"</table>");
}

// The last changed date of SVN has no row on the diff page.
bool leftOut(const SBuildInfoField<SSvnInfo>& field) { return field.pField == &SSvnInfo::LastChangedDate; }
bool leftOut(const SBuildInfoField<SPscmInfo>&) { return false; }

// The rows of one kind of build information, only if both sides have it.
template <typename TRecord>
void writeInfoRows(CMarkupWriter& writer, const TRecord* infoA, const TRecord* infoB) {
  if (!infoA || !infoB) return;
  for (const SBuildInfoField<TRecord>& field : BuildInfoFields<TRecord>()) {
    if (field.szLabel && !leftOut(field))
      writeTextRow(writer, field.szLabel, infoA->*field.pField, infoB->*field.pField);
  }
}

void writeBuildTable(CMarkupWriter& writer, const SData& a, const SData& b) {
  openSideBySideTable(writer, L"Build Version", L"<table id=\"build\">");
  writeTextRow(writer, L"Build Configuration:", a.BuildConfiguration, b.BuildConfiguration);
  writeInfoRows(writer, a.SvnInfo.get(), b.SvnInfo.get());
  writeInfoRows(writer, a.PscmInfo.get(), b.PscmInfo.get());
  writer.WriteLineClose(L"</table>");
}

CString timeOutText(unsigned int timeOut) {
  return timeOut == 0xFFFFFFFF ? CString(L"-") : FormatString(L"%d", timeOut);
}

void writeSetupTable(CMarkupWriter& writer, const SData& a, const SData& b) {
  openSideBySideTable(writer, L"Test Setup", L"<table id=\"setup\">");
  writeTextRow(writer, L"CPU:", a.Processor, b.Processor);
  writeTextRow(writer, L"GPU:", a.GPU, b.GPU);
  writeTextRow(writer, L"Machine Name:", a.MachineName, b.MachineName);
  writeTextRow(writer, L"Data Directory:", a.DataDirectory, b.DataDirectory);
  writeTextRow(writer, L"Run Tag:", a.RunTag, b.RunTag);
  writeTextRow(writer, L"Execution Mode:", a.ExecutionMode, b.ExecutionMode);
  WriteDiffRowUInt(writer, L"Thread Count:", a.ThreadCount, b.ThreadCount, differentIf(a.ThreadCount != b.ThreadCount));
  writeTextRow(writer, L"Testcase Time Out (sec.):", timeOutText(a.TimeOut), timeOutText(b.TimeOut));
  writer.WriteLineClose(L"</table>");
}

void writeRateRow(CMarkupWriter& writer, const wchar_t* label, unsigned int successfulA, unsigned int totalA,
                  unsigned int successfulB, unsigned int totalB) {
  const float rateA = GetSuccessRate(successfulA, totalA);
  const float rateB = GetSuccessRate(successfulB, totalB);
  const EDiffRowState state = rateB > rateA ? eDiffBetter : (rateB < rateA ? eDiffWorse : eDiffNone);
  WriteDiffRowText(writer, label, FormatSuccessRate(successfulA, totalA, rateA),
                   FormatSuccessRate(successfulB, totalB, rateB), state);
}

void writeDoubleRow(CMarkupWriter& writer, const wchar_t* label, double a, double b) {
  WriteDiffRowDouble(writer, label, a, b, differentIf(a != b));
}

void writeUInt64Row(CMarkupWriter& writer, const wchar_t* label, std::uint64_t a, std::uint64_t b) {
  WriteDiffRowUInt64(writer, label, a, b, differentIf(a != b));
}

void writeResultTable(CMarkupWriter& writer, const SData& a, const SData& b) {
  openSideBySideTable(writer, L"Result", L"<table id=\"result\">");
  writeRateRow(writer, L"Successful Classes / Total Classes:", a.ClassesSuccessful, a.ClassesTotal, b.ClassesSuccessful,
               b.ClassesTotal);
  writeRateRow(writer, L"Successful Cases / Total Cases:", a.Successful, a.CasesTotal, b.Successful, b.CasesTotal);
  WriteDiffRowUInt(writer, L"Case Errors:", a.Errors, b.Errors, judgeCount(a.Errors, b.Errors));
  WriteDiffRowUInt(writer, L"Case Failures:", a.Failures, b.Failures, judgeCount(a.Failures, b.Failures));
  WriteDiffRowUInt(writer, L"Cases Warnings:", a.Warnings, b.Warnings, judgeCount(a.Warnings, b.Warnings));
  writeTextRow(writer, L"Begin Date:", a.DateBegin, b.DateBegin);
  writeTextRow(writer, L"End Date:", a.DateEnd, b.DateEnd);
  writeDoubleRow(writer, L"Time total (sec):", a.TimeTotal, b.TimeTotal);
  writeDoubleRow(writer, L"Time per case avg (sec):", a.TimeAvg, b.TimeAvg);
  writeDoubleRow(writer, L"Time per case max (sec):", a.TimeMax, b.TimeMax);
  writeDoubleRow(writer, L"Time per case min (sec):", a.TimeMin, b.TimeMin);
  writeUInt64Row(writer, L"Memory per case avg (Bytes):", a.MemoryAvg, b.MemoryAvg);
  writeUInt64Row(writer, L"Memory per case max (Bytes):", a.MemoryMax, b.MemoryMax);
  writeUInt64Row(writer, L"Memory per case min (Bytes):", a.MemoryMin, b.MemoryMin);
  writer.WriteLineClose(L"</table>");
}

void writePage(CMarkupWriter& writer, const CString& pathA, const CString& pathB, const SData& a, const SData& b,
               bool bIgnoreOneSided, bool bOmitCaseTable, bool bHideWarnings) {
  WriteHtmlHead(writer, true);
  writer.WriteLineOpen(L"<body>");
  writer.WriteElement(L"h1", L"ZoTestSuite Report Diff");
  writeSourceTable(writer, pathA, pathB);
  writeBuildTable(writer, a, b);
  writeSetupTable(writer, a, b);
  writeResultTable(writer, a, b);
  WriteDiffClassTable(writer, a, b, BuildDiffClassRows(a, b, bIgnoreOneSided, bHideWarnings));
  if (!bOmitCaseTable) WriteDiffCaseTable(writer, a, b, BuildDiffCaseRows(a, b, bIgnoreOneSided, bHideWarnings));
}

template <typename T>
void writeDiffRow(CMarkupWriter& writer, const CString& label, const wchar_t* format, T a, T b, EDiffRowState state) {
  WriteDiffRowText(writer, label, FormatString(format, a), FormatString(format, b), state);
}

}  // namespace

void WriteDiffRowUInt(CMarkupWriter& writer, const CString& label, unsigned int a, unsigned int b,
                      EDiffRowState state) {
  writeDiffRow(writer, label, L"%u", a, b, state);
}

void WriteDiffRowDouble(CMarkupWriter& writer, const CString& label, double a, double b, EDiffRowState state) {
  writeDiffRow(writer, label, L"%f", a, b, state);
}

void WriteDiffRowUInt64(CMarkupWriter& writer, const CString& label, std::uint64_t a, std::uint64_t b,
                        EDiffRowState state) {
  writeDiffRow(writer, label, L"%I64u", a, b, state);
}

void WriteDiffRowText(CMarkupWriter& writer, const CString& label, const CString& a, const CString& b,
                      EDiffRowState state) {
  writer.WriteLineOpen(GetDiffRowTag(state));
  writer.WriteElement(L"td", label);
  writer.WriteElement(L"td", a);
  writer.WriteElement(L"td", b);
  writer.WriteLineClose(L"</tr>");
}

void WriteReportDiff(const CString& outPath, const CString& pathA, const CString& pathB, const SData& a, const SData& b,
                     bool bIgnoreOneSided, bool bOmitCaseTable, bool bHideWarnings) {
  if (outPath.IsEmpty() || a.Classes.GetCount() == 0 || a.Cases.GetCount() == 0 || b.Classes.GetCount() == 0 ||
      b.Cases.GetCount() == 0) {
    return;
  }
  try {
    {
      ZoStreamWriteASCIIFile stream(outPath, 0, 0, 0);
      CMarkupWriter writer(stream);
      writePage(writer, pathA, pathB, a, b, bIgnoreOneSided, bOmitCaseTable, bHideWarnings);
      stream.Close();  // inside the guard: a failed last write is said, too
    }
    WriteReportResourceFiles(Utils::GetPathDirectory(outPath));
  } catch (...) { COut::Write(L"HTML-Report %s konnte nicht erzeugt werden.\n", outPath); }
}

}  // namespace TestSuite::Report
