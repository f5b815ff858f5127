#include <gtest/gtest.h>

#include "RunTestClasses.h"
#include "ZoTestSuite.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

TEST(Recreate, RenewsWhatCanBeRenewed) {
  RunTestClasses::RecreateLog().clear();
  XbArray<SUnitTest> classes;
  classes.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szRecreate, {L"renew", L"keep", L"fails", L"gone"}));
  classes.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"}));
  classes.Add(RunTestClasses::MakeClass(L"NoSuchClassAnywhere", {L"a", L"b"}));
  int ticks = 0;
  Run::SCallbacks callbacks;
  callbacks.fnCaseFinished = [&ticks](Run::ECaseResult result) {
    EXPECT_EQ(result, Run::eCaseOk);
    ++ticks;
  };
  CEnvironment env;
  COutRecorder recorder;
  Run::Recreate(env, classes, callbacks);
  EXPECT_EQ(ticks, 7);
  EXPECT_EQ(RunTestClasses::RecreateLog(), std::vector<std::string>{"renew"});
  EXPECT_EQ(recorder.Text(), CString(L"RtRecreate:\n\trenew...\n\t\tDatensatz wurde erneuert.\n"
                                     L"\tSubtest 'keep' hat keine erneuerbaren Daten.\n"
                                     L"\tfails...\n\t\tFehler: Exception während dem Neuerzeugen.\n"
                                     L"\t\tFehler: Exception während dem Neuerzeugen.\n"
                                     L"RtResults:\n\tSubtest 'r1' hat keine erneuerbaren Daten.\n"
                                     L"NoSuchClassAnywhere:\n"
                                     L"\tFehler: Unittest 'NoSuchClassAnywhere' konnte nicht instanziert werden.\n"
                                     L"\tFehler: Unittest 'NoSuchClassAnywhere' konnte nicht instanziert werden.\n"
                                     L"\nNeuerzeugen der Testfälle beendet.\n"));
  const auto messages = recorder.Messages();
  EXPECT_TRUE(messages[0].bBold);
  EXPECT_EQ(messages[1].color, ZoColorRGBA::c_BLUE);
  EXPECT_EQ(messages[2].color, ZoColorRGBA::c_GREEN);
  EXPECT_EQ(messages[3].color, ZoColorRGBA::c_GOLDENROD);
  EXPECT_EQ(messages[5].color, ZoColorRGBA::c_RED);
}

TEST(Recreate, CancellationEndsWithTheGrayMessage) {
  XbArray<SUnitTest> classes;
  classes.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szRecreate, {L"keep", L"keep"}));
  classes.Add(RunTestClasses::MakeClass(RunTestClasses::sc_szResults, {L"r1"}));
  int asked = 0, ticks = 0;
  Run::SCallbacks callbacks;
  callbacks.fnIsCanceled = [&asked] { return ++asked > 1; };
  callbacks.fnCaseFinished = [&ticks](Run::ECaseResult) { ++ticks; };
  CEnvironment env;
  COutRecorder recorder;
  Run::Recreate(env, classes, callbacks);
  EXPECT_EQ(ticks, 2);  // the case at which the cancellation was seen ticks too
  EXPECT_EQ(recorder.Text(), CString(L"RtRecreate:\n\tSubtest 'keep' hat keine erneuerbaren Daten.\n"
                                     L"\tAusführung abgebrochen.\n"));
  EXPECT_EQ(recorder.Messages().back().color, ZoColorRGBA::c_GRAY);
}

TEST(Recreate, EmptyList) {
  CEnvironment env;
  COutRecorder recorder;
  Run::Recreate(env, {}, Run::SCallbacks());
  EXPECT_EQ(recorder.Text(), CString(L"\nNeuerzeugen der Testfälle beendet.\n"));
}
