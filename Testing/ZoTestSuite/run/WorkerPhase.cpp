// The worker phase: the worker threads, the queue they take rows from, the
// list of finished rows and the supervision that prints them.
#include "run/WorkerPhase.h"

#include <algorithm>
#include <thread>

#include "foundation/XbCriticalSection.h"
#include "foundation/platform/Thread.h"
#include "run/CaseExecution.h"
#include "run/RetryPolicy.h"
#include "run/RunClock.h"
#include "services/COut.h"

namespace TestSuite {

namespace {

// Shared by all workers of one phase; `lock` guards `uiNext`.
struct SWorkQueue {
  XbCriticalSection lock;
  const SRunContext& run;
  const RowList& parallelCases;
  unsigned int uiNext = 0;
};

// The rows the workers have finished, in order of finishing.
struct SFinishedList {
  XbCriticalSection lock;
  RowList rows;
  unsigned int uiCount = 0;
};

class CWorkerThread {
 public:
  CWorkerThread(int index, SWorkQueue& queue, SFinishedList& finished)
      : iIndex(index), m_queue(queue), m_finished(finished) {}

  void Start() {
    m_thread = std::thread([this] { threadMain(); });
  }
  void Wait() {
    if (m_thread.joinable()) m_thread.join();
  }
  bool HasFailed() const { return m_bFailed; }

 private:
  // An exception that leaves the body ends the thread and marks it failed;
  // its row never reaches the finished list. Every worker runs on all the
  // processors of the process at normal priority, whatever the thread that
  // made it had.
  void threadMain() {
    ZoPlatform::Thread::SetCurrentName("TestSuite::Run::CWorkerThread");
    ZoPlatform::Thread::UseProcessAffinityAndNormalPriority();
    try {
      Run();
    } catch (...) { m_bFailed = true; }
  }
  void Run();
  SCaseResult* take(bool& canceled);
  void finish(SCaseResult* row);

  int iIndex;
  SWorkQueue& m_queue;
  SFinishedList& m_finished;
  std::thread m_thread;
  bool m_bFailed = false;
};

SCaseResult* CWorkerThread::take(bool& canceled) {
  XbScopedLock lock(m_queue.lock);
  if (m_queue.uiNext == m_queue.parallelCases.GetCount()) return nullptr;
  canceled = m_queue.run.callbacks.fnIsCanceled();
  return m_queue.parallelCases[m_queue.uiNext++];
}

void CWorkerThread::finish(SCaseResult* row) {
  XbScopedLock lock(m_finished.lock);
  m_finished.rows[m_finished.uiCount++] = row;
}

void CWorkerThread::Run() {
  CEnvironment::PreallocateStaticData();
  const SRunContext& run = m_queue.run;
  SCaseContext context(run);
  bool canceled = false;
  while (SCaseResult* row = take(canceled)) {
    row->iThreadIndex = iIndex;
    if (run.options.bRecordStartTime) row->sStartTime = XbDateTime::Now().ToString(L"Y-m-d H:i:s.v", true);
    if (canceled) {
      row->eResult = Run::eCaseCanceled;
    } else {
      const SUnitTest& unitTest = run.classes[row->uiClassIndex];
      ExecuteRow(run, unitTest, unitTest.Cases[row->uiCaseIndex], context, *row);
    }
    finish(row);
  }
}

unsigned int readFinishedCount(SFinishedList& finished) {
  XbScopedLock lock(finished.lock);
  return finished.uiCount;
}

// Prints the rows as they finish, until all are shown or the user cancels.
void supervise(SWorkQueue& queue, SFinishedList& finished) {
  const SRunContext& run = queue.run;
  unsigned int shown = 0;
  const unsigned int total = queue.parallelCases.GetCount();
  while (shown < total) {
    run.clock.Sleep(sc_uiSupervisionPeriodMs);
    const unsigned int count = readFinishedCount(finished);
    for (; shown < count; ++shown) {
      if (run.callbacks.fnIsCanceled()) {
        COut::Write(L"\tAusführung abgebrochen.\n").Color(ZoColorRGBA::c_GRAY);
        return;
      }
      const SCaseResult& row = *finished.rows[shown];
      const SUnitTest& unitTest = run.classes[row.uiClassIndex];
      PrintCaseHead(run.options, unitTest, unitTest.Cases[row.uiCaseIndex], finished.rows, shown);
      PrintCaseResult(row, run.options.bShowTimes, run.options.bShowThreadInfo);
      run.callbacks.fnCaseFinished(row.eResult);
    }
  }
}

}  // namespace

unsigned int ClampThreadCount(unsigned int requested) { return std::clamp(requested, 1u, sc_uiMaxWorkerThreads); }

void RunWorkerPhase(const SRunContext& run, const RowList& parallelCases) {
  SWorkQueue queue{{}, run, parallelCases, 0};
  SFinishedList finished;
  finished.rows.SetCount(parallelCases.GetCount());
  const unsigned int threadCount = ClampThreadCount(run.options.uiThreadCount);
  XbArray<std::unique_ptr<CWorkerThread>> threads;
  for (unsigned int i = 0; i < threadCount; ++i) {
    threads.Add(std::make_unique<CWorkerThread>(static_cast<int>(i), queue, finished));
    threads.Last()->Start();
  }
  supervise(queue, finished);
  for (auto& thread : threads) thread->Wait();
}

}  // namespace TestSuite
