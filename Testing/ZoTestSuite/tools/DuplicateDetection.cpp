// The duplicate detection mode: duplicate sets of every file-based class of
// a data tree, counted, listed, or thinned out to the oldest file of each.
#include "ZoTestSuite.h"
#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"
#include "services/COut.h"
#include "tools/DuplicateSets.h"

namespace TestSuite {
namespace {

void deleteRedundantFiles(const SDuplicateSet& set) {
  if (set.GetCount() < 2) XB_THROW("TestSuite::RunDuplicateDetection");
  COut::Write(L"    %s... [KEEP]\n", set[0].sFile);
  for (unsigned int i = 1; i < set.GetCount(); ++i) {
    if (ZoFileSystem::DeleteFile(set[i].sPath)) COut::Write(L"    %s... [DELETED]\n", set[i].sFile);
    else COut::Write(L"Fehler während Löschen von Datei %s\n", set[i].sPath);
  }
}

// Any other action prints only the set's header.
void actOnSet(const SDuplicateSet& set, EDuplicateAction eAction) {
  if (eAction == eListDuplicates)
    for (const SDuplicateFile& file : set) COut::Write(L"    %s\n", file.sFile);
  else if (eAction == eDeleteDuplicates) deleteRedundantFiles(set);
}

void actOnClass(const CString& className, const XbArray<SDuplicateSet>& sets, EDuplicateAction eAction) {
  COut::Write(L"%s\n", className);
  for (unsigned int i = 0; i < sets.GetCount(); ++i) {
    COut::Write(L"  Duplikat-Set (%d/%d):\n", i + 1, sets.GetCount());
    actOnSet(sets[i], eAction);
  }
  COut::Write(L"\n");
}

}  // namespace

void RunDuplicateDetection(const SSetup& setup, CEnvironment& environment) {
  environment.LoadTestDLLs();
  const XbArray<SUnitTest> unitTests = CollectUnitTests(setup.sDataDir, setup.collectOptions);
  XbArray<XbArray<SDuplicateSet>> setsOfClass;
  setsOfClass.SetCount(unitTests.GetCount());

  unsigned int uiRedundant = 0;
  for (unsigned int i = 0; i < unitTests.GetCount(); ++i) {
    COut::Write(L"Check: %s\n", unitTests[i].Name);
    uiRedundant += FindDuplicateSets(unitTests[i], setsOfClass[i]);
  }
  COut::Write(L"\n");
  if (!setup.oDuplicateAction) return;

  for (unsigned int i = 0; i < unitTests.GetCount(); ++i)
    if (!setsOfClass[i].IsEmpty()) actOnClass(unitTests[i].Name, setsOfClass[i], *setup.oDuplicateAction);
  COut::Write(L"Durchsuchtes Datenverzeichnis: %s\n", setup.sDataDir);
  COut::Write(L"Gefundene Unittest-Klassen: %d\n", unitTests.GetCount());
  COut::Write(L"Redundante Datensätze darin: %d\n", uiRedundant);
}

}  // namespace TestSuite
