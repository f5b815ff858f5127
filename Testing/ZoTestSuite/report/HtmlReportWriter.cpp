// The HTML report page.
#include "report/HtmlReportWriter.h"

#include "foundation/ZoStreamFile.h"
#include "report/ReportResources.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

using Utils::CMarkupWriter;

// The plain report reads a rate of 0 where there is nothing to count.
float guardedRate(unsigned int successful, unsigned int total) {
  return total == 0 ? 0.0f : GetSuccessRate(successful, total);
}

void writeBuildTable(CMarkupWriter& writer, const SData& data) {
  writer.WriteElement(L"h2", L"Build Version");
  writer.WriteLineOpen(L"<table id=\"build\">");
  WriteHtmlTableRow(writer, L"Build Configuration:", data.BuildConfiguration);
  const auto write = [&writer](const auto& field, const CString& value) {
    if (field.szLabel) WriteHtmlTableRow(writer, field.szLabel, value);
  };
  ForEachBuildInfoField(data.SvnInfo.get(), write);
  ForEachBuildInfoField(data.PscmInfo.get(), write);
  writer.WriteLineClose(L"</table>");
}

void writeSetupTable(CMarkupWriter& writer, const SData& data) {
  writer.WriteElement(L"h2", L"Test Setup");
  writer.WriteLineOpen(L"<table id=\"setup\">");
  WriteHtmlTableRow(writer, L"CPU:", data.Processor);
  WriteHtmlTableRow(writer, L"GPU:", data.GPU);
  WriteHtmlTableRow(writer, L"Machine Name:", data.MachineName);
  WriteHtmlTableRow(writer, L"Data Directory:", data.DataDirectory);
  WriteHtmlTableRow(writer, L"Execution Mode:", data.ExecutionMode);
  WriteHtmlTableRow(writer, L"Run Tag:", data.RunTag);
  WriteHtmlTableRow(writer, L"Thread Count:", FormatString(L"%d", data.ThreadCount));
  WriteHtmlTableRow(writer, L"Testcase Time Out (sec.):",
                    data.TimeOut == 0xFFFFFFFF ? CString(L"-") : FormatString(L"%d", data.TimeOut));
  if (data.ShuffleSeed) WriteHtmlTableRow(writer, L"Shuffle Seed:", FormatString(L"%I64u", *data.ShuffleSeed));
  writer.WriteLineClose(L"</table>");
}

void writeResultTable(CMarkupWriter& writer, const SData& data) {
  writer.WriteElement(L"h2", L"Result");
  writer.WriteLineOpen(L"<table id=\"result\">");
  WriteHtmlTableRow(writer, L"Successful Classes / Total Classes:",
                    FormatSuccessRate(data.ClassesSuccessful, data.ClassesTotal,
                                      guardedRate(data.ClassesSuccessful, data.ClassesTotal)));
  WriteHtmlTableRow(writer, L"Successful Cases / Total Cases:",
                    FormatSuccessRate(data.Successful, data.CasesTotal, guardedRate(data.Successful, data.CasesTotal)));
  WriteHtmlTableRow(writer, L"Case Errors:", FormatString(L"%d", data.Errors));
  WriteHtmlTableRow(writer, L"Case Failures:", FormatString(L"%d", data.Failures));
  WriteHtmlTableRow(writer, L"Cases Warnings:", FormatString(L"%d", data.Warnings));
  WriteHtmlTableRow(writer, L"Begin Date:", data.DateBegin);
  WriteHtmlTableRow(writer, L"End Date:", data.DateEnd);
  WriteHtmlTableRow(writer, L"Time total (sec):", FormatString(L"%f", data.TimeTotal));
  WriteHtmlTableRow(writer, L"Time per case avg (sec):", FormatString(L"%f", data.TimeAvg));
  WriteHtmlTableRow(writer, L"Time per case max (sec):", FormatString(L"%f", data.TimeMax));
  WriteHtmlTableRow(writer, L"Time per case min (sec):", FormatString(L"%f", data.TimeMin));
  WriteHtmlTableRow(writer, L"Memory per case avg (Bytes):", FormatString(L"%I64u", data.MemoryAvg));
  WriteHtmlTableRow(writer, L"Memory per case max (Bytes):", FormatString(L"%I64u", data.MemoryMax));
  WriteHtmlTableRow(writer, L"Memory per case min (Bytes):", FormatString(L"%I64u", data.MemoryMin));
  writer.WriteLineClose(L"</table>");
}

// The row class of a class; empty for a row that is not written.
const wchar_t* classRowClass(const SClassData& row, bool bHideWarnings) {
  if (row.Errors != 0) return L"class=\"error\"";
  if (row.Failures > 0) return L"class=\"failure\"";
  if (row.Warnings != 0) return bHideWarnings ? L"" : L"class=\"warning\"";
  return L"";
}

void writeClassTable(CMarkupWriter& writer, const SData& data, bool bHideWarnings) {
  if (data.ClassesSuccessful >= data.ClassesTotal && (data.ClassesNotClean == 0 || bHideWarnings)) return;
  writer.WriteElement(L"h2", L"Class Summary");
  writer.WriteLineOpen(L"<table id=\"testclasses\">");
  WriteHtmlHeadRow(writer, {L"Class Name", L"Total Cases", L"Unsuccessful", L"Warnings", L"Contact"});
  for (const SClassData& row : data.Classes) {
    const wchar_t* rowClass = classRowClass(row, bHideWarnings);
    if (*rowClass == L'\0') continue;
    writer.WriteLineOpen(FormatString(L"<tr %s>", rowClass));
    writer.WriteElement(L"td", row.Name);
    writer.WriteElement(L"td", FormatString(L"%u", row.CasesTotal));
    writer.WriteElement(L"td", FormatString(L"%u", row.Errors + row.Failures));
    writer.WriteElement(L"td", FormatString(L"%u", row.Warnings));
    writer.WriteElement(L"td", MakeContactCell(row));
    writer.WriteLineClose(L"</tr>");
  }
  writer.WriteLineClose(L"</table>");
}

const wchar_t* caseRowClass(const SCaseData& row, bool bHideWarnings) {
  switch (GetResultGroup(row.ResultType)) {
    case eGroupError: return L"class=\"error\"";
    case eGroupFailure: return L"class=\"failure\"";
    default: return row.Warning && !bHideWarnings ? L"class=\"warning\"" : L"class=\"ok\"";
  }
}

void writeCaseRow(CMarkupWriter& writer, unsigned int index, const SCaseData& row, bool bHideWarnings) {
  writer.WriteLineOpen(FormatString(L"<tr %s>", caseRowClass(row, bHideWarnings)));
  writer.WriteElement(L"td", FormatString(L"%u", index));
  writer.WriteElement(L"td", row.ClassName);
  writer.WriteElement(L"td", CMarkupWriter::Clean(row.CaseName));
  writer.WriteElement(L"td", FormatString(L"%f", row.Time));
  writer.WriteElement(L"td", FormatString(L"%I64u", row.Memory));
  writer.WriteElement(L"td", GetResultLabel(row.ResultType));
  writer.WriteElement(L"td", row.Message);
  writer.Indent();
  writer.Write(L"<td>");
  for (const SDump& dump : row.Dumps) writer.Write(dump.Text + L"<br/>");
  writer.Write(L"</td>\n");
  writer.WriteLineClose(L"</tr>");
}

void writeCaseTable(CMarkupWriter& writer, const SData& data, bool bHideWarnings) {
  writer.WriteElement(L"h2", L"Testcases");
  writer.WriteLineOpen(L"<table id=\"testcases\">");
  WriteHtmlHeadRow(writer, {L"Id", L"Test Class Name", L"Test Name", L"Time (sec)", L"Memory (Bytes)", L"Result Type",
                            L"Info", L"Dump"});
  for (unsigned int i = 0; i < data.Cases.GetCount(); ++i) writeCaseRow(writer, i, data.Cases[i], bHideWarnings);
  writer.WriteLineClose(L"</table>");
}

void writePage(CMarkupWriter& writer, const SData& data, bool bOmitCaseTable, bool bHideWarnings) {
  WriteHtmlHead(writer, true);
  writer.WriteLineOpen(L"<body>");
  writer.WriteElement(L"h1", L"ZoTestSuite Report");
  writeBuildTable(writer, data);
  writeSetupTable(writer, data);
  writeResultTable(writer, data);
  writeClassTable(writer, data, bHideWarnings);
  if (!bOmitCaseTable) writeCaseTable(writer, data, bHideWarnings);
  writer.WriteLineClose(L"</body>");
  writer.WriteLineClose(L"</html>");
}

}  // namespace

void WriteHtmlHead(CMarkupWriter& writer, bool embedStyle) {
  writer.WriteLine(
      L"<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\" "
      L"\"http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd\">");
  writer.WriteLineOpen(L"<html xmlns=\"http://www.w3.org/1999/xhtml\">");
  writer.WriteLineOpen(L"<head>");
  writer.WriteLine(L"<meta http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\"/>");
  writer.WriteElement(L"title", L"ZoTestSuite Report");
  writer.WriteLineOpen(L"<style type=\"text/css\">");
  if (embedStyle) {
    // Split as case output is split: empty lines vanish, and so would a
    // last line without a line end.
    const CString styleSheet = CString::FromLatin1(LoadStyleSheet());
    int position = 0;
    CString line = styleSheet.Tokenize(L"\r\n", position);
    while (position >= 0 && position <= styleSheet.GetLength()) {
      writer.WriteLine(line);
      line = styleSheet.Tokenize(L"\r\n", position);
    }
  }
  writer.WriteLineClose(L"</style>");
  writer.WriteLine(L"<link rel=\"stylesheet\" type=\"text/css\" href=\"ZoTestSuite.css\"/>");
  writer.WriteLine(L"<script src=\"ZoTestSuite.js\" type=\"text/javascript\"></script>");
  writer.WriteLineClose(L"</head>");
}

void WriteHtmlHeadRow(CMarkupWriter& writer, std::initializer_list<const wchar_t*> heads) {
  writer.WriteLineOpen(L"<tr>");
  for (const wchar_t* head : heads) writer.WriteElement(L"th", head);
  writer.WriteLineClose(L"</tr>");
}

float GetSuccessRate(unsigned int successful, unsigned int total) {
  const float quotient = static_cast<float>(successful) / static_cast<float>(total);
  return static_cast<float>(quotient * 100.0);
}

CString FormatSuccessRate(unsigned int successful, unsigned int total, float rate) {
  return FormatString(L"%d/%d = %4.2f%%", successful, total, static_cast<double>(rate));
}

CString MakeContactCell(const SClassData& row) {
  if (row.ContactEMail.IsEmpty()) return CString();
  return FormatString(L"<a href=\"mailto:%s\">%s</a>", row.ContactEMail,
                      row.ContactName.IsEmpty() ? row.ContactEMail : row.ContactName);
}

void WriteHtmlTableRow(CMarkupWriter& writer, const CString& label, const CString& value) {
  writer.WriteLineOpen(L"<tr>");
  writer.WriteElement(L"td", label);
  writer.WriteElement(L"td", value);
  writer.WriteLineClose(L"</tr>");
}

void WriteHtmlReport(const CString& path, const SData& data, bool bOmitCaseTable, bool bHideWarnings) {
  if (path.IsEmpty()) return;
  try {
    {
      ZoStreamWriteASCIIFile stream(path, 0, 0, 0);
      CMarkupWriter writer(stream);
      writePage(writer, data, bOmitCaseTable, bHideWarnings);
      stream.Close();
    }
    WriteReportResourceFiles(Utils::GetPathDirectory(path));
  } catch (...) { COut::Write(L"HTML-Report %s konnte nicht erzeugt werden.\n", path); }
}

}  // namespace TestSuite::Report
