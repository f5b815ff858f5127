// ReportMerge: the merge of the parts' reports and the tool mode around it.
#include "tools/ReportMerge.h"

#include <algorithm>
#include <map>

#include "discovery/ShardSelection.h"
#include "foundation/ZoFileSystem.h"
#include "report/HtmlReportWriter.h"
#include "report/ReportNames.h"
#include "report/XmlReportWriter.h"
#include "services/COut.h"
#include "tools/ReportInput.h"

namespace TestSuite {
namespace {

void copyRunInformation(const Report::SData& first, Report::SData& merged) {
  merged.BuildConfiguration = first.BuildConfiguration;
  merged.SvnInfo = first.SvnInfo;
  merged.PscmInfo = first.PscmInfo;
  merged.Processor = first.Processor;
  merged.GPU = first.GPU;
  merged.MachineName = first.MachineName;
  merged.DataDirectory = first.DataDirectory;
  merged.ExecutionMode = first.ExecutionMode;
  merged.ThreadCount = first.ThreadCount;
  merged.TimeOut = first.TimeOut;
  merged.RunTag = first.RunTag;
}

void appendCases(const Report::SData& part, Report::SData& merged) {
  for (const Report::SCaseData& row : part.Cases) {
    Report::SCaseData copy = row;
    copy.Id = merged.Cases.GetCount();
    merged.Cases.Add(std::move(copy));
  }
}

void addClassRow(const Report::SClassData& row, Report::SClassData& target) {
  target.CasesTotal += row.CasesTotal;
  target.Errors += row.Errors;
  target.Failures += row.Failures;
  target.Warnings += row.Warnings;
  target.Successful = target.CasesTotal - target.Failures - target.Errors;
  if (target.ContactEMail.IsEmpty() && target.ContactName.IsEmpty()) {
    target.ContactName = row.ContactName;
    target.ContactEMail = row.ContactEMail;
  }
}

void mergeClasses(const std::vector<Report::SData>& parts, Report::SData& merged) {
  std::map<std::wstring, unsigned int> rowOfName;
  for (const Report::SData& part : parts)
    for (const Report::SClassData& row : part.Classes) {
      const auto [it, bNew] = rowOfName.emplace(row.Name.Str(), merged.Classes.GetCount());
      if (bNew) {
        Report::SClassData empty;
        empty.Name = row.Name;
        merged.Classes.Add(std::move(empty));
      }
      addClassRow(row, merged.Classes[it->second]);
    }
  std::stable_sort(merged.Classes.begin(), merged.Classes.end(),
                   [](const Report::SClassData& a, const Report::SClassData& b) { return a.Name.Compare(b.Name) < 0; });
}

void countClasses(Report::SData& merged) {
  unsigned int uiClean = 0;
  for (const Report::SClassData& row : merged.Classes) {
    if (row.CasesTotal == 0) continue;
    ++merged.ClassesTotal;
    if (row.Failures + row.Errors != 0) continue;
    ++merged.ClassesSuccessful;
    if (row.Warnings == 0) ++uiClean;
  }
  merged.ClassesNotClean = merged.ClassesTotal - uiClean;
}

void countCases(Report::SData& merged) {
  double dTimeSum = 0.0;
  std::uint64_t uiMemorySum = 0;
  for (const Report::SCaseData& row : merged.Cases) {
    const Report::EResultGroup group = Report::GetResultGroup(row.ResultType);
    merged.Failures += group == Report::eGroupFailure ? 1 : 0;
    merged.Errors += group == Report::eGroupError ? 1 : 0;
    merged.Warnings += row.Warning ? 1 : 0;
    const bool bFirst = merged.CasesTotal++ == 0;
    dTimeSum += row.Time;
    uiMemorySum += row.Memory;
    merged.TimeMax = bFirst ? row.Time : std::max(merged.TimeMax, row.Time);
    merged.TimeMin = bFirst ? row.Time : std::min(merged.TimeMin, row.Time);
    merged.MemoryMax = bFirst ? row.Memory : std::max(merged.MemoryMax, row.Memory);
    merged.MemoryMin = bFirst ? row.Memory : std::min(merged.MemoryMin, row.Memory);
  }
  merged.Successful = merged.CasesTotal - merged.Failures - merged.Errors;
  if (merged.CasesTotal == 0) return;
  merged.TimeAvg = dTimeSum / merged.CasesTotal;
  merged.MemoryAvg = uiMemorySum / merged.CasesTotal;
}

// Dates in report form compare as texts; a part without one says nothing.
void spanDates(const Report::SData& part, Report::SData& merged) {
  if (!part.DateBegin.IsEmpty() && (merged.DateBegin.IsEmpty() || part.DateBegin.Compare(merged.DateBegin) < 0))
    merged.DateBegin = part.DateBegin;
  if (!part.DateEnd.IsEmpty() && part.DateEnd.Compare(merged.DateEnd) > 0) merged.DateEnd = part.DateEnd;
}

CString revisionText(const Report::SData& data) {
  const std::optional<std::int64_t> revision = Report::GetRevision(data);
  return revision ? FormatString(L"%I64i", *revision) : CString(L"keine");
}

void warnAboutMixedParts(const SSetup& setup, const std::vector<Report::SData>& parts) {
  for (std::size_t i = 1; i < parts.size(); ++i) {
    const CString& first = setup.diffInputs[0];
    const CString& other = setup.diffInputs[static_cast<unsigned int>(i)];
    if (revisionText(parts[i]) != revisionText(parts[0]))
      COut::Write(L"Warnung: Die Teilreports stammen aus verschiedenen Revisionen: %s (%s) und %s (%s).\n", first,
                  revisionText(parts[0]), other, revisionText(parts[i]))
          .Color(ZoColorRGBA::c_GOLDENROD);
    if (parts[i].DataDirectory != parts[0].DataDirectory)
      COut::Write(L"Warnung: Die Teilreports stammen aus verschiedenen Datenverzeichnissen: %s (%s) und %s (%s).\n",
                  first, parts[0].DataDirectory, other, parts[i].DataDirectory)
          .Color(ZoColorRGBA::c_GOLDENROD);
  }
}

CString htmlPathBeside(const CString& xmlPath) {
  CString directory, name, extension;
  ZoFileSystem::SplitPath(xmlPath, directory, name, extension);
  return directory + name + L".html";
}

}  // namespace

Report::SData MergeReportData(const std::vector<Report::SData>& parts) {
  Report::SData merged;
  if (parts.empty()) return merged;
  copyRunInformation(parts.front(), merged);
  for (const Report::SData& part : parts) {
    appendCases(part, merged);
    merged.TimeTotal += part.TimeTotal;
    spanDates(part, merged);
  }
  mergeClasses(parts, merged);
  countClasses(merged);
  countCases(merged);
  return merged;
}

bool MergeReports(const SSetup& setup, Report::SData& merged) {
  std::vector<Report::SData> parts(setup.diffInputs.GetCount());
  for (unsigned int i = 0; i < setup.diffInputs.GetCount(); ++i)
    if (!LoadReportInput(setup.diffInputs[i], parts[i])) return false;
  warnAboutMixedParts(setup, parts);
  merged = MergeReportData(parts);
  if (!setup.sRunTag.IsEmpty()) merged.RunTag = setup.sRunTag;
  else if (IsShardRunTag(merged.RunTag)) merged.RunTag.Empty();
  const CString xmlPath = setup.oXmlReport.value_or(CString());
  Report::WriteXmlReport(xmlPath, merged);
  if (setup.oHtmlReport) {
    const CString htmlPath = setup.oHtmlReport->IsEmpty() ? htmlPathBeside(xmlPath) : *setup.oHtmlReport;
    Report::WriteHtmlReport(htmlPath, merged, setup.bHtmlClassesOnly, setup.bHtmlHideWarnings);
  }
  return true;
}

}  // namespace TestSuite
