#include "run/WorkerPhase.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>

#include "IsolationTestClasses.h"
#include "RunTestClasses.h"
#include "run/RunDriver.h"
#include "run/external/ChildProcess.h"
#include "run_FakeClock.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using IsolationTestClasses::Records;
using IsolationTestClasses::SRecord;

namespace {

SUnitTest::SCase sequentialCase(const wchar_t* name) {
  SUnitTest::SCase testCase{CString(name), {}};
  testCase.Params.SetAt(L"Parallel", XbVariant(false));
  return testCase;
}

// A run over ready classes with times off.
Run::SResult run(SSetup& setup) {
  setup.run.bShowTimes = false;
  CEnvironment env;
  CFakeClock clock;  // the supervisor's looks cost no real time
  return RunTests(setup, env, clock, DefaultChildStarter());
}

SSetup parallelSetup(unsigned int threads) {
  SSetup setup;
  setup.run.bParallel = true;
  setup.run.uiThreadCount = threads;
  return setup;
}

const SRecord& recordOf(const std::vector<SRecord>& records, const wchar_t* name) {
  for (const SRecord& record : records)
    if (record.sName == name) return record;
  throw std::runtime_error("no record");
}

bool overlap(const SRecord& a, const SRecord& b) { return a.start < b.end && b.start < a.end; }

class WorkerPhase : public ::testing::Test {
 protected:
  void SetUp() override { IsolationTestClasses::ClearRecords(); }
  COutRecorder m_recorder;
};

}  // namespace

TEST(ClampThreadCount, AtLeastOneAtMost256) {
  EXPECT_EQ(ClampThreadCount(0), 1u);
  EXPECT_EQ(ClampThreadCount(1), 1u);
  EXPECT_EQ(ClampThreadCount(5), 5u);
  EXPECT_EQ(ClampThreadCount(256), 256u);
  EXPECT_EQ(ClampThreadCount(257), 256u);
  EXPECT_EQ(ClampThreadCount(300), 256u);
}

TEST_F(WorkerPhase, AllCasesKeptOutOfThePoolMakeNoThreads) {
  SSetup setup = parallelSetup(4);
  SUnitTest unitTest = RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {});
  for (const wchar_t* name : {L"r0", L"r1", L"r2"}) unitTest.Cases.Add(sequentialCase(name));
  setup.unitTests.Add(unitTest);
  const Run::SResult result = run(setup);
  for (const SCaseResult& row : result.cases) {
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    EXPECT_EQ(row.iThreadIndex, -1);
  }
  const std::vector<SRecord> records = Records();
  ASSERT_EQ(records.size(), 3u);
  for (const SRecord& record : records) {
    EXPECT_EQ(record.thread, std::this_thread::get_id());
    EXPECT_EQ(record.uiWorkerThreads, 0u);
  }
}

TEST_F(WorkerPhase, ACaseKeptOutOfThePoolRunsLastAndAlone) {
  SSetup setup = parallelSetup(2);
  SUnitTest unitTest = RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {});
  unitTest.Cases.Add(sequentialCase(L"r0"));
  for (const wchar_t* name : {L"r1", L"r2", L"r3", L"r4", L"r5"}) unitTest.Cases.Add(SUnitTest::SCase{name, {}});
  setup.unitTests.Add(unitTest);
  const Run::SResult result = run(setup);
  ASSERT_EQ(result.cases.GetCount(), 6u);
  EXPECT_EQ(result.cases[0].iThreadIndex, -1);
  for (unsigned int i = 1; i < 6; ++i) {
    EXPECT_GE(result.cases[i].iThreadIndex, 0);
    EXPECT_LT(result.cases[i].iThreadIndex, 2);
  }
  const std::vector<SRecord> records = Records();
  ASSERT_EQ(records.size(), 6u);
  EXPECT_EQ(records.back().sName, L"r0");
  const SRecord& last = recordOf(records, L"r0");
  EXPECT_EQ(last.uiWorkerThreads, 0u);
  for (const SRecord& record : records) {
    if (record.sName == L"r0") continue;
    EXPECT_LE(record.end, last.start) << "r0 began before the end of a case of the pool";
    EXPECT_GE(record.uiWorkerThreads, 1u);
  }
}

TEST_F(WorkerPhase, CasesKeptOutOfThePoolNeverOverlapAnyOther) {
  SSetup setup = parallelSetup(3);
  setup.run.uiRepeatCount = 2;
  SUnitTest unitTest = RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {});
  unitTest.Cases.Add(SUnitTest::SCase{L"r0", {}});
  unitTest.Cases.Add(sequentialCase(L"r1"));
  unitTest.Cases.Add(SUnitTest::SCase{L"r2", {}});
  unitTest.Cases.Add(sequentialCase(L"r3"));
  unitTest.Cases.Add(SUnitTest::SCase{L"r4", {}});
  setup.unitTests.Add(unitTest);
  run(setup);
  const std::vector<SRecord> records = Records();
  ASSERT_EQ(records.size(), 10u);
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].sName != L"r1" && records[i].sName != L"r3") continue;
    for (std::size_t k = 0; k < records.size(); ++k) {
      if (k != i) { EXPECT_FALSE(overlap(records[i], records[k])) << "a sequential case overlaps another"; }
    }
  }
}

TEST_F(WorkerPhase, ZeroThreadsGiveOne) {
  SSetup setup = parallelSetup(0);
  setup.unitTests.Add(RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {L"r0", L"r1", L"r2", L"r3"}));
  const Run::SResult result = run(setup);
  for (const SCaseResult& row : result.cases) {
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    EXPECT_EQ(row.iThreadIndex, 0);
  }
}

// 256 cases that each wait until 256 cases run at once: they pass only if
// 256 threads exist, and a 257th thread would show in the thread indices.
TEST_F(WorkerPhase, ThreeHundredThreadsGive256) {
  IsolationTestClasses::ResetGate(256);
  SSetup setup = parallelSetup(300);
  SUnitTest unitTest = RunTestClasses::MakeClass(IsolationTestClasses::sc_szGate, {});
  for (int i = 0; i < 260; ++i) unitTest.Cases.Add(SUnitTest::SCase{FormatString(L"g%d", i), {}});
  setup.unitTests.Add(unitTest);
  const Run::SResult result = run(setup);
  std::set<int> threads;
  for (const SCaseResult& row : result.cases) {
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    threads.insert(row.iThreadIndex);
  }
  EXPECT_EQ(threads.size(), 256u);
  EXPECT_EQ(*threads.begin(), 0);
  EXPECT_EQ(*threads.rbegin(), 255);
}

TEST_F(WorkerPhase, TwoRepetitionsOfACaseCanRunAtOnce) {
  IsolationTestClasses::ResetGate(2);
  SSetup setup = parallelSetup(2);
  setup.run.uiRepeatCount = 2;
  setup.unitTests.Add(RunTestClasses::MakeClass(IsolationTestClasses::sc_szGate, {L"g0"}));
  const Run::SResult result = run(setup);
  ASSERT_EQ(result.cases.GetCount(), 2u);
  EXPECT_EQ(result.cases[0].eResult, Run::eCaseOk) << "the repetitions did not run at the same time";
  EXPECT_EQ(result.cases[1].eResult, Run::eCaseOk);
  EXPECT_NE(result.cases[0].iThreadIndex, result.cases[1].iThreadIndex);
}

TEST_F(WorkerPhase, CancelBeforeTheFirstRowCancelsEveryRowAndPrintsNoCase) {
  SSetup setup = parallelSetup(3);
  setup.unitTests.Add(
      RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {L"r0", L"r1", L"r2", L"r3", L"r4", L"r5"}));
  setup.callbacks.fnIsCanceled = [] { return true; };
  std::atomic<int> finished{0};
  setup.callbacks.fnCaseFinished = [&finished](Run::ECaseResult) { ++finished; };
  const Run::SResult result = run(setup);
  for (const SCaseResult& row : result.cases) {
    EXPECT_EQ(row.eResult, Run::eCaseCanceled);
    EXPECT_GE(row.iThreadIndex, 0);
    EXPECT_LT(row.iThreadIndex, 3);
  }
  EXPECT_TRUE(Records().empty());
  EXPECT_EQ(finished.load(), 0);
  EXPECT_EQ(m_recorder.Text(), CString(L"\tAusführung abgebrochen.\n\nZusammenfassung\n\tAusgeführt:\t0 Tests, 0 "
                                       L"Klassen\n\tErfolgreich:\t0 Tests, 0 Klassen\n"));
}

TEST_F(WorkerPhase, ParallelParameterWithoutAParallelRunChangesNothing) {
  SSetup setup;
  setup.run.uiThreadCount = 4;
  SUnitTest unitTest = RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {});
  SUnitTest::SCase testCase{L"r0", {}};
  testCase.Params.SetAt(L"Parallel", XbVariant(true));
  unitTest.Cases.Add(testCase);
  unitTest.Cases.Add(SUnitTest::SCase{L"r1", {}});
  setup.unitTests.Add(unitTest);
  const Run::SResult result = run(setup);
  for (const SCaseResult& row : result.cases) {
    EXPECT_EQ(row.eResult, Run::eCaseOk);
    EXPECT_EQ(row.iThreadIndex, -1);
  }
  for (const SRecord& record : Records()) {
    EXPECT_EQ(record.thread, std::this_thread::get_id());
    EXPECT_EQ(record.uiWorkerThreads, 0u);
  }
}

TEST_F(WorkerPhase, EveryRowIsPrintedOnceAndReportedOnce) {
  SSetup setup = parallelSetup(3);
  setup.unitTests.Add(RunTestClasses::MakeClass(IsolationTestClasses::sc_szRecorder, {L"r0", L"r1", L"r2", L"r3"}));
  int finished = 0;
  setup.callbacks.fnCaseFinished = [&finished](Run::ECaseResult result) {
    EXPECT_EQ(result, Run::eCaseOk);
    ++finished;
  };
  run(setup);
  EXPECT_EQ(finished, 4);
  const std::wstring text = m_recorder.Text().Str();
  for (const wchar_t* name : {L"\tr0... OK\n", L"\tr1... OK\n", L"\tr2... OK\n", L"\tr3... OK\n"}) {
    const std::size_t at = text.find(name);
    EXPECT_NE(at, std::wstring::npos) << "missing line";
    EXPECT_EQ(text.find(name, at + 1), std::wstring::npos) << "line printed twice";
  }
}
