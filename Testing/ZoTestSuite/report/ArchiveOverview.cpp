// The overview page of a report archive.
#include "report/ArchiveOverview.h"

#include <cmath>

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoStreamFile.h"
#include "report/FileSystemError.h"
#include "report/HtmlReportWriter.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

using Utils::CMarkupWriter;

constexpr int c_iBarWidth = 500;  // pixels, the same for every row whatever the size of its run

// "%4.2f%% (%d/%d)", the rate unguarded: zero cases print as no number.
CString formatShare(unsigned int successful, unsigned int total) {
  return FormatString(L"%4.2f%% (%d/%d)", GetSuccessRate(successful, total), successful, total);
}

// The green part of the bar: the share times the width in single
// precision, truncated. A share that is no number (zero cases) gives 0.
int greenWidth(unsigned int successful, unsigned int total) {
  const float width = static_cast<float>(successful) / static_cast<float>(total) * static_cast<float>(c_iBarWidth);
  if (std::isnan(width) || width < 0.0f) return 0;
  return width >= 2147483647.0f ? 2147483647 : static_cast<int>(width);
}

void writeBar(CMarkupWriter& writer, const SArchiveRow& row) {
  const int green = greenWidth(row.successfulCases, row.casesTotal);
  writer.WriteLineOpen(L"<td>");
  writer.WriteLine(FormatString(L"<div class=\"ok\" style=\"width:%dpx\">&nbsp;</div>", green));
  writer.WriteLine(FormatString(L"<div class=\"error\" style=\"width:%dpx\">&nbsp;</div>", c_iBarWidth - green));
  writer.WriteLineClose(L"</td>");
}

void writeLinks(CMarkupWriter& writer, const SArchiveRow& row, const CString& diffLink) {
  writer.WriteLine(FormatString(L"<td><a href=\"%s\">Report</a></td>", row.reportLink));
  const CString diff = diffLink.IsEmpty() ? CString() : FormatString(L"<a href=\"%s\">Diff</a>", diffLink);
  writer.WriteLine(FormatString(L"<td>%s</td>", diff));
}

// The full table shows the bar and links to the diff against the previous
// full report; the all table shows the run tag and links to the neighbour.
void writeTable(CMarkupWriter& writer, const XbArray<SArchiveRow>& rows, bool bFull) {
  writer.WriteLineOpen(L"<table id=\"overview\">");
  if (bFull)  // the second "Successful Cases" heads the bar
    WriteHtmlHeadRow(writer, {L"Revision", L"Run Date", L"Successful Classes", L"Successful Cases", L"Successful Cases",
                              L"Report", L"Diff"});
  else
    WriteHtmlHeadRow(
        writer, {L"Revision", L"Run Tag", L"Run Date", L"Successful Classes", L"Successful Cases", L"Report", L"Diff"});
  for (unsigned int i = rows.GetCount(); i-- > 0;) {
    const SArchiveRow& row = rows[i];
    writer.WriteLineOpen(L"<tr>");
    writer.WriteElement(L"td", row.revision);
    if (!bFull) writer.WriteElement(L"td", row.isPart ? L"Part" : L"Full");
    writer.WriteElement(L"td", row.date);
    writer.WriteElement(L"td", formatShare(row.successfulClasses, row.classesTotal));
    writer.WriteElement(L"td", formatShare(row.successfulCases, row.casesTotal));
    if (bFull) writeBar(writer, row);
    writeLinks(writer, row, bFull ? row.diffToPreviousFull : row.diffToPrevious);
    writer.WriteLineClose(L"</tr>");
  }
  writer.WriteLineClose(L"</table>");
}

void writePage(CMarkupWriter& writer, const CString& directory, const SArchiveRows& rows) {
  WriteHtmlHead(writer, true);
  writer.WriteLineOpen(L"<body>");
  writer.WriteElement(L"h1", L"Archive Overview");
  writer.WriteLineOpen(L"<table id=\"overview-info\">");
  writer.WriteLineOpen(L"<tr>");
  writer.WriteElement(L"td", L"Directory:");
  writer.WriteElement(L"td", directory);
  writer.WriteLineClose(L"</tr>");
  writer.WriteLineClose(L"</table>");
  writer.WriteLine(L"<a name=\"FullReports\"></a><h2>Full Reports</h2>");
  writeTable(writer, rows.full, true);
  writer.WriteLine(L"<a name=\"AllReports\"></a><h2>All Reports</h2>");
  writeTable(writer, rows.all, false);
  writer.WriteLineClose(L"</body>");
  writer.WriteLineClose(L"</html>");
}

// One level; a directory that is there already is fine.
void makeDirectory(const CString& path) {
  if (!ZoFileSystem::CreateDirectoryW(path) && !ZoFileSystem::IsDirectory(path))
    ThrowFileSystemError("create_directory(p): invalid argument", path);
}

}  // namespace

void WriteArchiveOverviewPage(const CString& path, const CString& directory, const SArchiveRows& rows) {
  ZoStreamWriteASCIIFile stream(path, 0, 0, 0);
  CMarkupWriter writer(stream);
  writePage(writer, directory, rows);
  stream.Close();
}

void WriteArchiveOverview(const CString& directory) {
  const XbArray<SArchiveEntry> entries = ScanArchive(directory);
  CString archive = directory;
  Utils::AddBackslash(archive);
  makeDirectory(archive + L"html");
  makeDirectory(archive + L"html/diff");
  const CString htmlDirectory = archive + L"html/";
  const SArchiveRows rows = UpdateArchivePages(entries, htmlDirectory);
  WriteArchiveOverviewPage(htmlDirectory + L"index.html", directory, rows);
}

}  // namespace TestSuite::Report
