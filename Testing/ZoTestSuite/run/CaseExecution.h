// Case execution: one row of the result table taken to its end through a
// work block, in this process or in a child, and RunCaseInBlock, which
// runs the case that a block describes.
#pragma once

#include <cstdint>
#include <memory>

#include "ZoTestSuite.h"
#include "run/RunContext.h"
#include "run/WorkBuffer.h"

namespace TestSuite {

struct SChildProcess;
class CNamedEvent;

// The execution state of one thread of a run: its blocks, and in external
// execution its child process and the two events; and the clock and the
// child starter of its cases. Outlives the cases of its thread; a child it
// still holds is terminated when it goes.
struct SCaseContext {
  std::unique_ptr<IWorkBuffer> heapBuffer;
  CString sDataDir;  // what its children are started with
  CString sMemoryId;
  CString sRequestEventId;
  CString sResponseEventId;
  std::unique_ptr<SChildProcess> child;
  std::unique_ptr<IWorkBuffer> sharedBuffer;
  std::unique_ptr<CNamedEvent> requestEvent;
  std::unique_ptr<CNamedEvent> responseEvent;
  std::uint64_t uiRunDate = 0;
  XbArray<CString> libraries;    // the run's further libraries, which its children load as well
  IRunClock* pClock;             // not owned
  IChildStarter* pChildStarter;  // not owned

  // On the system's clock, with children of the front end beside the
  // executable.
  SCaseContext();
  explicit SCaseContext(std::uint64_t runDate);
  // With the run's date, libraries, clock and child starter.
  explicit SCaseContext(const SRunContext& run);
  ~SCaseContext();
  SCaseContext(const SCaseContext&) = delete;
  SCaseContext& operator=(const SCaseContext&) = delete;
};

// A copy of `options` with the parameters of the case applied.
SRunOptions ResolveCaseOptions(const SRunOptions& options, const SUnitTest::SCase& testCase);

// The block owner for this case, owned by the context.
IWorkBuffer& AcquireWorkBuffer(const CString& sDataDir, const SRunOptions& options, SCaseContext& context);

// Runs one row to its end and fills it.
void ExecuteCase(const SRunContext& run, const SUnitTest& unitTest, const SUnitTest::SCase& testCase,
                 SCaseContext& context, SCaseResult& row);

// Runs the case the block describes and writes the outcome into it; the
// case's time is taken on `clock`.
void RunCaseInBlock(SWorkBlock& block, IRunClock& clock);

}  // namespace TestSuite
