// UnitTestRecords: hand-made records of discovery, a test class with its
// cases and a wildcard filter, for tests that need a class list without a
// data tree.
#pragma once

#include <initializer_list>

#include "ZoTestSuiteTree.h"
#include "foundation/CString.h"

namespace TestSupport {

// The class `name` in `dataDir` with the cases `cases`, in order, without
// parameters.
TestSuite::SUnitTest MakeClass(const wchar_t* name, const CString& dataDir,
                               std::initializer_list<const wchar_t*> cases);

// The filter that the front end makes of the wildcard `wildcard` (case
// blind); with `eAction` 0 a match includes, with anything else it excludes.
TestSuite::SPatternFilter Wildcard(const wchar_t* wildcard, unsigned int eAction);

}  // namespace TestSupport
