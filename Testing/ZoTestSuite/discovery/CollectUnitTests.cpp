// CollectUnitTests: the scan of a data tree for test classes and their
// cases, and the stages that narrow the result.
//
// A directory is a test class when its leaf name is a registered class
// derived from ZoUnitTest. Only directories that are no test class are
// descended into, so test classes never nest. Problems with one class are
// warnings in c_GOLDENROD and never stop the scan.
#include <algorithm>
#include <memory>

#include "ZoTestSuiteTree.h"
#include "discovery/CollectFilterStages.h"
#include "discovery/ExtraInfo.h"
#include "discovery/ShardSelection.h"
#include "foundation/UnitTestFactory.h"
#include "foundation/XbRTTI.h"
#include "foundation/ZoColorRGBA.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUnitTest.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite {
namespace {

const unsigned int c_uiNoCaseLimit = 0xFFFFFFFF;

// Directories whose name holds this anywhere are skipped with all below.
const wchar_t* const c_sVersionControlMark = L".svn";

// Every warning names the class, even where its text speaks of a directory.
void warn(const wchar_t* format, const CString& className) {
  COut::Write(format, className).Color(ZoColorRGBA::c_GOLDENROD);
}

// The factory's exceptions count as no instance.
std::unique_ptr<ZoUnitTest> createInstance(const CString& className) {
  try {
    return CreateUnitTestInstance(className);
  } catch (...) { return nullptr; }
}

// Appends a case per subtest of the instance. An exception while a name is
// asked for ends the list with a warning; the cases listed so far stay.
// The subtest count is asked again before each name, and its exceptions,
// like those of SetDataDirectory and InitSubtests, leave the collection.
void listCases(ZoUnitTest& test, SUnitTest& unitTest) {
  test.SetDataDirectory(unitTest.DataDir);
  test.InitSubtests();
  for (unsigned int i = 0; i < test.GetSubtestCount(); ++i) {
    SUnitTest::SCase testCase;
    try {
      testCase.Name = test.GetSubtestName(i);
    } catch (...) {
      warn(L"Warnung: Falsche Konfiguration des Unittest %s.\n", unitTest.Name);
      return;
    }
    unitTest.Cases.Add(std::move(testCase));
  }
}

// One directory on the walk's path, linked to the one above it. A directory
// found again on its own path is reached through a link cycle.
struct SWalkStep {
  ZoFileSystem::SFileIdentity identity;
  std::shared_ptr<const SWalkStep> pAbove;
};
using WalkPath = std::shared_ptr<const SWalkStep>;

struct SPendingDirectory {
  CString sDir;
  WalkPath pPath;  // the directory itself and all above it
};
using WorkList = XbArray<SPendingDirectory>;

bool isOnPath(const ZoFileSystem::SFileIdentity& identity, const WalkPath& pPath) {
  for (const SWalkStep* pStep = pPath.get(); pStep; pStep = pStep->pAbove.get())
    if (pStep->identity == identity) return true;
  return false;
}

// Puts a directory on the work list unless it is one of the directories
// above it (a link such as "sub/up -> .."): then the cycle is walked once,
// with a warning.
void addToWorkList(const CString& dir, const WalkPath& pAbove, WorkList& workList) {
  ZoFileSystem::SFileIdentity identity;
  if (!ZoFileSystem::GetFileIdentity(dir, identity)) {
    workList.Add({dir, pAbove});
    return;
  }
  if (isOnPath(identity, pAbove)) {
    COut::Write(
        L"Warnung: Verzeichnis %s führt zurück in ein übergeordnetes Verzeichnis (Link-Zyklus) und wird "
        L"übersprungen.\n",
        dir)
        .Color(ZoColorRGBA::c_GOLDENROD);
    return;
  }
  workList.Add({dir, std::make_shared<const SWalkStep>(SWalkStep{identity, pAbove})});
}

// Removes the cases whose "Enable" is false; a case without the key stays.
void dropDisabledCases(SUnitTest& unitTest) {
  std::erase_if(unitTest.Cases.Std(), [](const SUnitTest::SCase& testCase) {
    const XbVariant* enable = testCase.Params.Find(L"Enable");
    return enable && enable->IsBool() && !enable->GetBool();
  });
}

// Examines one directory (`dir` ends in '/', `name` is its leaf). A directory
// that is no test class goes onto the work list to be searched; a test class
// with at least one case goes into the result.
void examineDirectory(const CString& dir, const CString& name, bool bDropDisabled, XbArray<SUnitTest>& result,
                      const WalkPath& pAbove, WorkList& workList) {
  const XbRTTI* pRtti = XbRTTI::Find(name);
  if (!pRtti || !pRtti->IsKindOf(ZoUnitTest::RTTI)) {
    addToWorkList(dir, pAbove, workList);
    return;
  }
  if (pRtti == &ZoUnitTest::RTTI) {
    warn(L"Warnung: Zum Verzeichnis %s gehörende Unittest Klasse hat keine eigene RTTI.\n", name);
    return;
  }
  if (!XbRTTI::getCreate(name)) {
    warn(L"Warnung: Unittest %s hat keine RTTI-Create Methode, kann nicht instanziert werden.\n", name);
    return;
  }

  SUnitTest unitTest;
  unitTest.Name = name;
  unitTest.DataDir = dir;
  const std::unique_ptr<ZoUnitTest> instance = createInstance(name);
  if (instance) listCases(*instance, unitTest);
  else warn(L"Warnung: Fehler beim Instanzieren von Unittest %s.\n", name);

  ReadExtraInfo(dir, unitTest);
  if (bDropDisabled) dropDisabledCases(unitTest);
  if (!unitTest.Cases.IsEmpty()) result.Add(std::move(unitTest));
}

// Searches the directories of the work list, last in first out, until none
// is left. Entries that are no directory are passed over.
void scanWorkList(bool bDropDisabled, XbArray<SUnitTest>& result, WorkList& workList) {
  while (!workList.IsEmpty()) {
    const SPendingDirectory pending = workList.Last();
    workList.RemoveAt(workList.GetCount() - 1);
    const CString& dir = pending.sDir;
    for (const ZoFileSystem::SEntry& entry : ZoFileSystem::ListDirectory(dir)) {
      if (!entry.bDirectory || entry.sName == L"." || entry.sName == L"..") continue;
      if (entry.sName.Find(c_sVersionControlMark) >= 0) continue;
      CString path = dir + entry.sName;
      Utils::AddBackslash(path);
      examineDirectory(path, entry.sName, bDropDisabled, result, pending.pPath, workList);
    }
  }
}

// Keeps the first `uiCaseLimit` cases in list order; all ones means no limit.
void applyCaseLimit(XbArray<SUnitTest>& unitTests, unsigned int uiCaseLimit) {
  if (uiCaseLimit == c_uiNoCaseLimit) return;
  if (uiCaseLimit == 0) {
    unitTests.RemoveAll();
    return;
  }
  unsigned int uiRemainder = uiCaseLimit;
  for (unsigned int i = 0; i < unitTests.GetCount(); ++i) {
    XbArray<SUnitTest::SCase>& cases = unitTests[i].Cases;
    if (uiRemainder <= cases.GetCount()) {
      cases.SetCount(uiRemainder);
      unitTests.SetCount(i + 1);
      return;
    }
    uiRemainder -= cases.GetCount();
  }
}

}  // namespace

XbArray<SUnitTest> CollectUnitTests(const CString& dataDir, const SCollectOptions& options) {
  XbArray<SUnitTest> result;
  WorkList workList;

  CString root = dataDir;
  Utils::AddBackslash(root);
  CString parent, leaf;
  Utils::SplitPathLeaf(root, parent, leaf);
  examineDirectory(root, leaf, options.bDropDisabled, result, nullptr, workList);
  scanWorkList(options.bDropDisabled, result, workList);

  std::sort(result.begin(), result.end(),
            [](const SUnitTest& a, const SUnitTest& b) { return a.Name.Compare(b.Name) < 0; });

  applySelectionAndFilters(result, options);
  applyCaseLimit(result, options.uiCaseLimit);
  ApplyShard(result, root, options.shard);
  return result;
}

}  // namespace TestSuite
