// Discovery and selection: the records of discovered test classes, the
// options that steer collection, and the pattern filters.
#pragma once

#include <functional>
#include <optional>
#include <regex>

#include "foundation/CString.h"
#include "foundation/XbArray.h"
#include "foundation/XbMap.h"
#include "foundation/XbVariant.h"

namespace TestSuite {

// One discovered test class, tied to one data directory.
struct SUnitTest {
  struct SContact {
    CString Name;
    CString Email;
    CString Role;
  };
  struct SCase {
    CString Name;                     // as the class's GetSubtestName gave it
    XbMap<CString, XbVariant> Params; // only what "#ExtraInfo.xml" set
  };

  CString Name;     // class name = leaf name of the directory
  CString DataDir;  // full path, always ending in '/'
  XbArray<SContact> Contacts;
  XbArray<SCase> Cases;
};

enum EFilterResult : unsigned int { FilterInclude = 0, FilterExclude = 1, FilterNeutral = 2 };

// One element of a filter list.
struct SPatternFilter {
  CString sPattern;  // for people; matching reads only `regex`
  std::wregex regex;
  unsigned int eAction = 0;  // 0: a match includes; anything else: a match excludes
};

// How collection finds and narrows the test classes.
struct SCollectOptions {
  bool bDropDisabled = true;
  CString sSelectionFile;
  unsigned int eSelectionMode = 0;  // 0: the selection says what runs; else inverted
  XbArray<SPatternFilter> filters;
  bool bFullMatch = false;
  unsigned int uiCaseLimit = 0xFFFFFFFF;  // all ones: no limit
};

// Scans `dataDir` for test classes and their cases, applies each class's
// "#ExtraInfo.xml", drops disabled cases, applies selection and filters and
// cuts the list to the case limit. The test libraries must be loaded.
XbArray<SUnitTest> CollectUnitTests(const CString& dataDir, const SCollectOptions& options);

}  // namespace TestSuite
