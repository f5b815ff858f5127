// ReportLoader_fuzz: the loader of XML reports on arbitrary bytes; what it
// accepts is written as a report again and loaded back, so that the writer
// meets every record the loader can make.
#include <cstddef>
#include <cstdint>

#include "FuzzInput.h"
#include "report/XmlReportLoader.h"
#include "report/XmlReportWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace TestSuite::Report;
  const CString path = FuzzSupport::WriteInput(L"input.xml", data, size);
  SData report;
  if (!LoadReportDataFromXMLFile(path, report)) return 0;
  const CString written = FuzzSupport::ScratchDirectory() + L"written.xml";
  WriteXmlReport(written, report);
  SData again;
  LoadReportDataFromXMLFile(written, again);
  return 0;
}
