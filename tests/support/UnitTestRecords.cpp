// UnitTestRecords: test classes and filters made by hand.
#include "UnitTestRecords.h"

#include "services/Utils.h"

namespace TestSupport {

TestSuite::SUnitTest MakeClass(const wchar_t* name, const CString& dataDir,
                               std::initializer_list<const wchar_t*> cases) {
  TestSuite::SUnitTest unitTest;
  unitTest.Name = name;
  unitTest.DataDir = dataDir;
  for (const wchar_t* caseName : cases) unitTest.Cases.Emplace().Name = caseName;
  return unitTest;
}

TestSuite::SPatternFilter Wildcard(const wchar_t* wildcard, unsigned int eAction) {
  TestSuite::SPatternFilter filter;
  filter.sPattern = wildcard;
  filter.wildcard.emplace(wildcard, false);
  filter.eAction = eAction;
  return filter;
}

}  // namespace TestSupport
