// The XML report, written line by line with fixed formats.
#include "report/XmlReportWriter.h"

#include "foundation/ZoStreamFile.h"
#include "report/MarkupWriter.h"
#include "services/COut.h"

namespace TestSuite::Report {

namespace {

using Utils::CMarkupWriter;

void writeSystemInfo(CMarkupWriter& writer, const SData& data) {
  writer.WriteLineOpen(L"<SystemInfo>");
  writer.WriteElement(L"Processor", data.Processor);
  writer.WriteElement(L"GPU", data.GPU);
  writer.WriteElement(L"MachineName", data.MachineName);
  writer.WriteLineClose(L"</SystemInfo>");
}

void writeBuildInfo(CMarkupWriter& writer, const SData& data) {
  writer.WriteLineOpen(L"<BuildInfo>");
  writer.WriteElement(L"BuildConfiguration", data.BuildConfiguration);
  const auto write = [&writer](const auto& field, const CString& value) {
    if (field.szElement) writer.WriteElement(CString(field.szElement), value);
  };
  ForEachBuildInfoField(data.SvnInfo.get(), write);
  ForEachBuildInfoField(data.PscmInfo.get(), write);
  writer.WriteLineClose(L"</BuildInfo>");
}

void writeRunInfo(CMarkupWriter& writer, const SData& data) {
  writer.WriteLineOpen(L"<RunInfo>");
  writer.WriteElement(L"DataDirectory", data.DataDirectory);
  writer.WriteElement(L"ExecutionMode", data.ExecutionMode);
  writer.WriteElement(L"RunTag", data.RunTag);
  writer.WriteElement(L"ThreadCount", data.ThreadCount);
  writer.WriteElement(L"TimeOut", static_cast<int>(data.TimeOut));  // no limit reads -1
  if (data.ShuffleSeed) writer.WriteElement(L"ShuffleSeed", *data.ShuffleSeed);
  writer.WriteLineClose(L"</RunInfo>");
}

void writeStatistics(CMarkupWriter& writer, const SData& data) {
  writer.WriteLineOpen(L"<Statistics>");
  writer.WriteElement(L"CasesTotal", data.CasesTotal);
  writer.WriteElement(L"Errors", data.Errors);
  writer.WriteElement(L"Failures", data.Failures);
  writer.WriteElement(L"Successful", data.Successful);
  writer.WriteElement(L"Warnings", data.Warnings);
  writer.WriteElement(L"MemoryMax", data.MemoryMax);
  writer.WriteElement(L"MemoryMin", data.MemoryMin);
  writer.WriteElement(L"MemoryAvg", data.MemoryAvg);
  writer.WriteElement(L"TimeTotal", data.TimeTotal);
  writer.WriteElement(L"TimeMax", data.TimeMax);
  writer.WriteElement(L"TimeMin", data.TimeMin);
  writer.WriteElement(L"TimeAvg", data.TimeAvg);
  writer.WriteElement(L"DateBegin", data.DateBegin);
  writer.WriteElement(L"DateEnd", data.DateEnd);
  writer.WriteLineClose(L"</Statistics>");
}

void writeClassStatistics(CMarkupWriter& writer, const SData& data) {
  writer.WriteLineOpen(L"<ClassStatistics>");
  writer.WriteElement(L"ClassesTotal", data.ClassesTotal);
  writer.WriteElement(L"Successful", data.ClassesSuccessful);
  for (const SClassData& row : data.Classes) {
    writer.WriteLineOpen(FormatString(L"<Class Name=\"%s\">", row.Name));
    writer.WriteElement(L"CasesTotal", row.CasesTotal);
    writer.WriteElement(L"Errors", row.Errors);
    writer.WriteElement(L"Failures", row.Failures);
    writer.WriteElement(L"Warnings", row.Warnings);
    writer.WriteElement(L"ContactName", row.ContactName);
    writer.WriteElement(L"ContactEMail", row.ContactEMail);
    writer.WriteLineClose(L"</Class>");
  }
  writer.WriteLineClose(L"</ClassStatistics>");
}

void writeCase(CMarkupWriter& writer, const SCaseData& row) {
  writer.WriteLineOpen(FormatString(L"<testcase id=\"%d\" classname=\"%s\" name=\"%s\">", row.Id, row.ClassName,
                                    CMarkupWriter::Clean(row.CaseName)));
  writer.WriteElement(L"time", row.Time);
  writer.WriteElement(L"memory", row.Memory);
  writer.WriteElement(L"memorydelta", row.MemoryDelta);
  writer.WriteLineOpen(
      FormatString(L"<result type=\"%s\"%s>", GetResultWord(row.ResultType), row.Warning ? L" warning=\"true\"" : L""));
  for (const SDump& dump : row.Dumps)
    writer.WriteLine(FormatString(L"<dump type=\"%s\">%s</dump>", dump.IsError ? L"error" : L"info", dump.Text));
  writer.WriteLineClose(L"</result>");
  const EResultGroup group = GetResultGroup(row.ResultType);
  if (group != eGroupOk) {
    const wchar_t* element = group == eGroupFailure ? L"failure" : L"error";
    writer.WriteLine(
        FormatString(L"<%s message=\"%s\" type=\"%s\"></%s>", element, L"", GetResultLabel(row.ResultType), element));
  }
  writer.WriteLineClose(L"</testcase>");
}

void writeReport(CMarkupWriter& writer, const SData& data) {
  writer.WriteLine(L"<?xml version=\"1.0\" encoding='ISO-8859-1' standalone='yes'?>");
  writer.WriteLine(L"<?xml-stylesheet type=\"text/xsl\" href=\"ZoTestSuiteReport.xsl\"?>");
  writer.WriteLineOpen(
      FormatString(L"<testsuite name=\"ZoTestSuite\" tests=\"%d\" errors=\"%d\" failures=\"%d\" "
                   L"skip=\"0\">",
                   data.CasesTotal, data.Errors, data.Failures));
  writeSystemInfo(writer, data);
  writeBuildInfo(writer, data);
  writeRunInfo(writer, data);
  writeStatistics(writer, data);
  writeClassStatistics(writer, data);
  for (const SCaseData& row : data.Cases) writeCase(writer, row);
  writer.WriteLineClose(L"</testsuite>");
}

}  // namespace

void WriteXmlReport(const CString& path, const SData& data) {
  if (path.IsEmpty()) return;
  try {
    ZoStreamWriteASCIIFile stream(path, 0, 0, 0);
    CMarkupWriter writer(stream);
    writeReport(writer, data);
    stream.Close();
  } catch (...) { COut::Write(L"XML-Report %s konnte nicht erzeugt werden.\n", path); }
}

}  // namespace TestSuite::Report
