// The pages and the overview lines of a report archive.
#include "report/ArchiveRows.h"

#include <cstdlib>
#include <memory>
#include <optional>

#include "foundation/ZoFileSystem.h"
#include "report/DiffPageContext.h"
#include "report/HtmlReportWriter.h"
#include "report/XmlReportLoader.h"
#include "services/xml/XMLNode.h"

namespace TestSuite::Report {

namespace {

// atoi as the C runtime has it: the long that strtol reads, cut to int; a
// missing element reads 0.
unsigned int atoiOf(const XMLNode& parent, const char* name) {
  const char* text = parent.getChildNode(name, 0).getText(0);
  if (!text) return 0;
  return static_cast<unsigned int>(static_cast<int>(std::strtol(text, nullptr, 10)));
}

// The figures of a report whose page exists, without loading it in full.
void parseFigures(const CString& path, SArchiveRow& row) {
  XMLResults results;  // a file that does not parse gives the empty node: zeros
  const XMLNode root = XMLNode::parseFile(path, "testsuite", &results);
  const XMLNode statistics = root.getChildNode("Statistics", 0);
  const XMLNode classes = root.getChildNode("ClassStatistics", 0);
  const char* date = statistics.getChildNode("DateBegin", 0).getText(0);
  row.date = date ? CString(date) : CString();
  row.casesTotal = atoiOf(statistics, "CasesTotal");
  row.successfulCases = atoiOf(statistics, "Successful");
  row.classesTotal = atoiOf(classes, "ClassesTotal");
  row.successfulClasses = atoiOf(classes, "Successful");
}

void takeFigures(const SData& data, SArchiveRow& row) {
  row.date = data.DateBegin;
  row.successfulCases = data.Successful;
  row.casesTotal = data.CasesTotal;
  row.successfulClasses = data.ClassesSuccessful;
  row.classesTotal = data.ClassesTotal;
}

CString stemOf(const CString& path) {
  CString directory, stem, extension;
  ZoFileSystem::SplitPath(path, directory, stem, extension);
  return stem;
}

}  // namespace

SArchiveRows UpdateArchivePages(const XbArray<SArchiveEntry>& entries, const CString& htmlDirectory) {
  SArchiveRows rows;
  std::optional<unsigned int> lastFull;
  for (unsigned int i = 0; i < entries.GetCount(); ++i) {
    const SArchiveEntry& entry = entries[i];
    SArchiveRow row;
    row.revision = entry.revision;
    row.isPart = entry.tag == CString(L"Part");
    const CString stem = stemOf(entry.path);
    row.reportLink = stem + L".html";
    // The slot is shared with the diff pages below, so that this report is
    // loaded at most once in this update.
    SDiffPageContext context{stem, htmlDirectory + L"diff/", entry.path, nullptr};
    const CString page = htmlDirectory + row.reportLink;
    if (!ZoFileSystem::Exists(page)) {
      context.pData = std::make_shared<SData>();
      LoadReportDataFromXMLFile(entry.path, *context.pData);
      WriteHtmlReport(page, *context.pData, false, true);
    }
    if (i > 0) EnsureDiffPage(context, row.diffToPrevious, entries[i - 1].path, true);
    if (!row.isPart && lastFull) EnsureDiffPage(context, row.diffToPreviousFull, entries[*lastFull].path, false);
    if (context.pData) takeFigures(*context.pData, row);
    else parseFigures(entry.path, row);
    if (!row.isPart) {
      lastFull = i;
      rows.full.Add(row);
    }
    rows.all.Add(row);
  }
  return rows;
}

}  // namespace TestSuite::Report
