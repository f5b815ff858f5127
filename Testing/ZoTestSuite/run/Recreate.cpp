// Run::Recreate: asks every case of a list of classes to renew its
// reference data. Nothing is timed, measured or reported.
#include "ZoTestSuite.h"
#include "foundation/IUnitTestRecreate.h"
#include "foundation/UnitTestFactory.h"
#include "foundation/XbException.h"
#include "services/COut.h"

namespace TestSuite {

namespace {

void recreateUnguarded(const SUnitTest& unitTest, const SUnitTest::SCase& testCase) {
  std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(unitTest.Name);
  if (!test || !test->IsKindOf(ZoUnitTest::RTTI)) {
    COut::Write(L"\tFehler: Unittest '%s' konnte nicht instanziert werden.\n", unitTest.Name).Color(ZoColorRGBA::c_RED);
    return;
  }
  test->SetDataDirectory(unitTest.DataDir);
  test->InitSubtests();
  const std::optional<unsigned int> index = FindSubtestIndex(*test, testCase.Name);
  if (!index) XB_THROW("TestSuite::Run::recreateTestCase");
  auto* recreate = dynamic_cast<IUnitTestRecreate*>(test.get());
  if (recreate && recreate->CanRecreate(*index)) {
    COut::Write(L"\t%s...\n", testCase.Name).Color(ZoColorRGBA::c_BLUE);
    recreate->Recreate(*index);
    COut::Write(L"\t\tDatensatz wurde erneuert.\n").Color(ZoColorRGBA::c_GREEN);
  } else {
    COut::Write(L"\tSubtest '%s' hat keine erneuerbaren Daten.\n", testCase.Name).Color(ZoColorRGBA::c_GOLDENROD);
  }
}

void recreateTestCase(const SUnitTest& unitTest, const SUnitTest::SCase& testCase) {
  try {
    recreateUnguarded(unitTest, testCase);
  } catch (...) { COut::Write(L"\t\tFehler: Exception während dem Neuerzeugen.\n").Color(ZoColorRGBA::c_RED); }
}

}  // namespace

void Run::Recreate(CEnvironment& env, const XbArray<SUnitTest>& classes, const SCallbacks& callbacks) {
  env.SetExecutableDirectoryAsWorkingDirectory();
  bool canceled = false;
  for (unsigned int c = 0; c < classes.GetCount() && !canceled; ++c) {
    COut::Write(L"%s:\n", classes[c].Name).Bold();
    for (unsigned int k = 0; k < classes[c].Cases.GetCount() && !canceled; ++k) {
      if (callbacks.fnIsCanceled()) canceled = true;
      else recreateTestCase(classes[c], classes[c].Cases[k]);
      callbacks.fnCaseFinished(eCaseOk);
    }
  }
  env.RestoreWorkingDirectory();
  if (!canceled) COut::Write(L"\nNeuerzeugen der Testfälle beendet.\n");
  else COut::Write(L"\tAusführung abgebrochen.\n").Color(ZoColorRGBA::c_GRAY);
}

}  // namespace TestSuite
