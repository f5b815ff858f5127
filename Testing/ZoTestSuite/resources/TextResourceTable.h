// TextResourceTable: the texts that the build compiles into the library,
// each found by its type and name. The lists are generated at build time
// (cmake/ZoReportResources.cmake, cmake/ZoPscmInfo.cmake); the library reads
// them only through LoadTextResource.
#pragma once

#include <cstddef>

namespace TestSuite::Resources {

struct STextResource {
  const char* sType;
  const char* sName;
  const unsigned char* pBytes;  // 8-bit text, not terminated
  std::size_t uiSize;
};

// The style sheet ("CSSFILE") and the script ("JSFILE") of the HTML reports.
extern const STextResource c_ReportResources[];
extern const std::size_t c_uiReportResourceCount;

// The build's source-control information ("PSCMINFOFILE"); none when the
// library was built outside a git checkout.
extern const STextResource c_BuildInfoResources[];
extern const std::size_t c_uiBuildInfoResourceCount;

}  // namespace TestSuite::Resources
