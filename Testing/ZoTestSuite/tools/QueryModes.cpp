// The two read-only listing modes: what a run would execute, and what the
// configuration files switch off and whom to ask about it.
#include "ZoTestSuite.h"
#include "services/COut.h"

namespace TestSuite {
namespace {

bool isDisabled(const SUnitTest::SCase& testCase) {
  const XbVariant* enable = testCase.Params.Find(L"Enable");
  return enable && enable->IsBool() && !enable->GetBool();
}

// The classes that have disabled cases, each with those cases only.
XbArray<SUnitTest> disabledCases(const XbArray<SUnitTest>& unitTests) {
  XbArray<SUnitTest> result;
  for (const SUnitTest& unitTest : unitTests) {
    XbArray<SUnitTest::SCase> disabled;
    for (const SUnitTest::SCase& testCase : unitTest.Cases)
      if (isDisabled(testCase)) disabled.Add(testCase);
    if (disabled.IsEmpty()) continue;
    SUnitTest copy = unitTest;
    copy.Cases = std::move(disabled);
    result.Add(std::move(copy));
  }
  return result;
}

void printDisabledClass(const SUnitTest& unitTest) {
  const CString contact = unitTest.Contacts.IsEmpty() ? CString(L"Unbekannt") : unitTest.Contacts[0].Name;
  COut::Write(L"%s (%s):\n", unitTest.Name, contact);
  const unsigned int uiCount = unitTest.Cases.GetCount();
  for (unsigned int i = 0; i < uiCount; ++i) COut::Write(L"    (%d/%d) %s\n", i + 1, uiCount, unitTest.Cases[i].Name);
  COut::Write(L"\n");
}

}  // namespace

void RunQueryMode(const SSetup& setup, CEnvironment& environment) {
  environment.LoadTestDLLs();
  for (const CString& name : setup.dllFiles) environment.LoadDLL(name, false);
  if (setup.sDataDir.IsEmpty()) return;

  const XbArray<SUnitTest> unitTests = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  CTree tree;
  tree.Build(unitTests);
  for (const SUnitTest& unitTest : unitTests) {
    COut::Write(L"%s\n", unitTest.DataDir);
    for (const SUnitTest::SCase& testCase : unitTest.Cases) COut::Write(L"    %s\n", testCase.Name);
    COut::Write(L"\n");
  }
  COut::Write(L"Datenverzeichnis: %s\n", setup.sDataDir);
  COut::Write(L"Klassen: %d\n", unitTests.GetCount());
  COut::Write(L"Fälle: %d\n", tree.GetCaseCount());
}

void ListDisabledTestCases(const SSetup& setup, CEnvironment& environment) {
  environment.LoadTestDLLs();
  SCollectOptions options = setup.collectOptions;
  options.bDropDisabled = false;
  const XbArray<SUnitTest> unitTests = CollectUnitTests(setup.sDataDir, options);

  unsigned int uiCaseTotal = 0;
  for (const SUnitTest& unitTest : unitTests) uiCaseTotal += unitTest.Cases.GetCount();
  const XbArray<SUnitTest> disabled = disabledCases(unitTests);
  unsigned int uiDisabledTotal = 0;
  for (const SUnitTest& unitTest : disabled) {
    printDisabledClass(unitTest);
    uiDisabledTotal += unitTest.Cases.GetCount();
  }
  COut::Write(L"Durchsuchtes Datenverzeichnis: %s\n", setup.sDataDir);
  COut::Write(L"Klassen mit deaktivierten Fällen: %d von %d\n", disabled.GetCount(), unitTests.GetCount());
  COut::Write(L"Deaktivierte Fälle: %d von %d\n", uiDisabledTotal, uiCaseTotal);
}

}  // namespace TestSuite
