// The JUnit form of a report.
#include "report/JUnitReportWriter.h"

#include <fstream>
#include <map>
#include <vector>

#include "foundation/SystemPath.h"
#include "foundation/XbException.h"
#include "report/MarkupWriter.h"
#include "services/COut.h"

namespace TestSuite::Report {

namespace {

using Utils::CMarkupWriter;

// The cases of one class name, in the order of the report.
struct SSuite {
  CString sName;
  std::vector<const SCaseData*> cases;
  unsigned int uiFailures = 0;
  unsigned int uiErrors = 0;
  double dTime = 0.0;
};

std::vector<SSuite> groupByClass(const SData& data) {
  std::vector<SSuite> suites;
  std::map<CString, std::size_t> indexOf;
  auto suiteOf = [&](const CString& name) -> SSuite& {
    const auto [it, added] = indexOf.emplace(name, suites.size());
    if (added) suites.push_back(SSuite{name, {}, 0, 0, 0.0});
    return suites[it->second];
  };
  for (const SClassData& row : data.Classes) suiteOf(row.Name);
  for (const SCaseData& row : data.Cases) {
    SSuite& suite = suiteOf(row.ClassName);
    suite.cases.push_back(&row);
    const EResultGroup group = GetResultGroup(row.ResultType);
    if (group == eGroupFailure) ++suite.uiFailures;
    if (group == eGroupError) ++suite.uiErrors;
    suite.dTime += row.Time;
  }
  return suites;
}

CString attribute(const wchar_t* name, const CString& value) {
  return FormatString(L" %s=\"%s\"", name, CMarkupWriter::Clean(value));
}

// Seconds as the schema wants them: digits, a point, three decimals.
CString seconds(double value) { return FormatString(L"%.3f", value > 0.0 ? value : 0.0); }

void writeProperty(CMarkupWriter& writer, const CString& name, const CString& value) {
  writer.WriteLine(FormatString(L"<property%s%s/>", attribute(L"name", name), attribute(L"value", value)));
}

void writeProperties(CMarkupWriter& writer, const SData& data) {
  writer.WriteLineOpen(L"<properties>");
  writeProperty(writer, L"BuildConfiguration", data.BuildConfiguration);
  const auto write = [&writer](const auto& field, const CString& value) {
    if (field.bJUnitProperty) writeProperty(writer, CString(field.szElement), value);
  };
  ForEachBuildInfoField(data.PscmInfo.get(), write);
  ForEachBuildInfoField(data.SvnInfo.get(), write);
  writeProperty(writer, L"Processor", data.Processor);
  writeProperty(writer, L"GPU", data.GPU);
  writeProperty(writer, L"MachineName", data.MachineName);
  writeProperty(writer, L"DataDirectory", data.DataDirectory);
  writeProperty(writer, L"ExecutionMode", data.ExecutionMode);
  writeProperty(writer, L"ThreadCount", FormatString(L"%u", data.ThreadCount));
  writeProperty(writer, L"TimeOut", FormatString(L"%d", static_cast<int>(data.TimeOut)));
  writeProperty(writer, L"RunTag", data.RunTag);
  if (data.ShuffleSeed) writeProperty(writer, L"ShuffleSeed", FormatString(L"%I64u", *data.ShuffleSeed));
  writeProperty(writer, L"DateBegin", data.DateBegin);
  writeProperty(writer, L"DateEnd", data.DateEnd);
  writer.WriteLineClose(L"</properties>");
}

CString dumpText(const SCaseData& row) {
  CString text;
  for (const SDump& dump : row.Dumps) text += dump.Text + L"\n";
  return text;
}

void writeCase(CMarkupWriter& writer, const SCaseData& row) {
  const CString head = FormatString(L"<testcase%s%s%s", attribute(L"classname", row.ClassName),
                                    attribute(L"name", row.CaseName), attribute(L"time", seconds(row.Time)));
  const EResultGroup group = GetResultGroup(row.ResultType);
  if (group == eGroupOk && row.Dumps.IsEmpty() && row.Message.IsEmpty()) {
    writer.WriteLine(head + L"/>");
    return;
  }
  writer.WriteLineOpen(head + L">");
  if (group != eGroupOk) {
    const wchar_t* element = group == eGroupFailure ? L"failure" : L"error";
    const CString label = GetResultLabel(row.ResultType);
    writer.WriteLine(FormatString(L"<%s%s%s>%s</%s>", element, attribute(L"type", label), attribute(L"message", label),
                                  dumpText(row), element));
  } else if (!row.Dumps.IsEmpty()) {
    writer.WriteLine(FormatString(L"<system-out>%s</system-out>", dumpText(row)));
  }
  if (!row.Message.IsEmpty())
    writer.WriteLine(FormatString(L"<system-err>%s</system-err>", CMarkupWriter::Clean(row.Message)));
  writer.WriteLineClose(L"</testcase>");
}

void writeSuite(CMarkupWriter& writer, const SData& data, const SSuite& suite, std::size_t id) {
  CString timestamp(data.DateBegin);
  timestamp.Replace(L' ', L'T');
  writer.WriteLineOpen(
      FormatString(L"<testsuite%s tests=\"%u\" failures=\"%u\" errors=\"%u\" skipped=\"0\"%s%s%s id=\"%u\">",
                   attribute(L"name", suite.sName), static_cast<unsigned int>(suite.cases.size()), suite.uiFailures,
                   suite.uiErrors, attribute(L"time", seconds(suite.dTime)), attribute(L"timestamp", timestamp),
                   attribute(L"hostname", data.MachineName), static_cast<unsigned int>(id)));
  writeProperties(writer, data);
  for (const SCaseData* row : suite.cases) writeCase(writer, *row);
  writer.WriteLineClose(L"</testsuite>");
}

CString makeDocument(const SData& data) {
  XbStreamWriteASCIIStringT<CString> text;
  CMarkupWriter writer(text);
  writer.WriteLine(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  writer.WriteLineOpen(FormatString(L"<testsuites name=\"ZoTestSuite\" tests=\"%u\" failures=\"%u\" errors=\"%u\"%s>",
                                    data.CasesTotal, data.Failures, data.Errors,
                                    attribute(L"time", seconds(data.TimeTotal))));
  const std::vector<SSuite> suites = groupByClass(data);
  for (std::size_t i = 0; i < suites.size(); ++i) writeSuite(writer, data, suites[i], i);
  writer.WriteLineClose(L"</testsuites>");
  return text.GetString();
}

}  // namespace

void WriteJUnitReport(const CString& path, const SData& data) {
  if (path.IsEmpty()) return;
  try {
    const std::string bytes = makeDocument(data).ToUtf8();
    std::ofstream file(PathToSystem(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) XB_THROW("Report::WriteJUnitReport");
  } catch (...) { COut::Write(L"JUnit-Report %s konnte nicht erzeugt werden.\n", path); }
}

}  // namespace TestSuite::Report
