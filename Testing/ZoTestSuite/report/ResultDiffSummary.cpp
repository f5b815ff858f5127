// The ResultDiffSummary file of a diff result trace.
#include "report/ResultDiffSummary.h"

#include "foundation/ZoStreamFile.h"
#include "report/MarkupWriter.h"

namespace TestSuite::Report {

namespace {

const wchar_t* boolText(bool value) { return value ? L"true" : L"false"; }

// "%d" on purpose: the result lines have always shown the revision as a
// 32-bit signed number, unlike the two revision elements.
CString resultLine(const wchar_t* element, const SRevisionResult& result) {
  return FormatString(L"<%s succeeded=\"%s\" revision=\"%d\"/>", element, boolText(result.Succeeded), result.Revision);
}

void writeGroup(Utils::CMarkupWriter& writer, const XbArray<STrace>& group, const SClassData* classRow) {
  writer.WriteLineOpen(FormatString(L"<UnitTest name=\"%s\">", group[0].Class));
  if (classRow) {
    writer.WriteElement(L"ContactName", classRow->ContactName);
    writer.WriteElement(L"ContactEMail", classRow->ContactEMail);
  }
  for (const STrace& trace : group) {
    writer.WriteLineOpen(FormatString(L"<TestCase name=\"%s\">", trace.Case));
    if (trace.Before) writer.WriteLine(resultLine(L"ResultBefore", *trace.Before));
    writer.WriteLine(resultLine(L"ResultAfter", trace.After));
    writer.WriteLineClose(L"</TestCase>");
  }
  writer.WriteLineClose(L"</UnitTest>");
}

}  // namespace

bool WriteResultDiffSummary(const CString& path, std::uint64_t beginRevision, std::uint64_t endRevision,
                            const CTraceGroups& groups, const SData& endReport) {
  XbMap<CString, unsigned int> classRows;
  for (unsigned int i = 0; i < endReport.Classes.GetCount(); ++i) classRows.SetAt(endReport.Classes[i].Name, i);
  try {
    ZoStreamWriteASCIIFile stream(path);
    Utils::CMarkupWriter writer(stream);
    writer.WriteLine(L"<?xml version=\"1.0\" encoding='ISO-8859-1'?>");
    writer.WriteLineOpen(L"<ResultDiffSummary>");
    writer.WriteElement(L"BeginRevision", beginRevision);
    writer.WriteElement(L"EndRevision", endRevision);
    for (const XbArray<STrace>& group : groups.GetGroups()) {
      const unsigned int* row = classRows.Find(group[0].Class);
      writeGroup(writer, group, row ? &endReport.Classes[*row] : nullptr);
    }
    writer.WriteLineClose(L"</ResultDiffSummary>");
    stream.Close();
    return true;
  } catch (...) {
    // Whatever has been written stays; the trace ends normally.
    return false;
  }
}

}  // namespace TestSuite::Report
