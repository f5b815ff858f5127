// The parent side of external execution (the child's block, events and
// process of a case context, and the supervision of a case) and the child
// side, Run::RunExternalExecution.
#include "run/external/ExternalExecution.h"

#include "foundation/XbException.h"
#include "foundation/ZoUniqueId.h"
#include "run/RunClock.h"
#include "run/RunDriver.h"
#include "run/external/ChildProcess.h"
#include "run/external/NamedEvent.h"
#include "run/external/SharedMemoryWorkBuffer.h"

namespace TestSuite {

namespace {

CString newId() { return ZoUniqueIdT<CString>::GetUniqueID(); }

void writeResult(IWorkBuffer& buffer, Run::ECaseResult result) {
  SBufferAccess access = buffer.GetWriteAccess();
  access.pBlock->eResult = result;
}

// Kills the child and takes back a request that it never took and an
// answer that it gave too late, so that the next child starts on a clean
// hand-over. Nobody else sets these events once the child is gone.
void abandonChild(SCaseContext& context) {
  context.child.reset();
  context.requestEvent->Wait(0);
  context.responseEvent->Wait(0);
}

// The supervision after the first wait for the answer: time limit, cancel
// query and the child's life, once a second each.
void superviseChild(SCaseContext& context, unsigned int uiTimeOutSec, const Run::SCallbacks& callbacks,
                    std::int64_t start, CNamedEvent::EWaitResult waited) {
  IRunClock& clock = *context.pClock;
  const double limit = static_cast<double>(uiTimeOutSec);
  while (waited != CNamedEvent::eWaitFailed) {
    const double elapsed = clock.SecondsSince(start);
    if (elapsed > limit) {
      abandonChild(context);
      writeResult(*context.sharedBuffer, Run::eCaseTimeout);
      return;
    }
    if (callbacks.fnIsCanceled()) {
      abandonChild(context);
      writeResult(*context.sharedBuffer, Run::eCaseCanceled);
      return;
    }
    if (!context.child->IsAlive()) break;
    waited = clock.Wait(*context.responseEvent, sc_uiChildPollMs);
    if (waited == CNamedEvent::eWaitSignalled) return;
  }
  abandonChild(context);  // the block keeps what the child left: after a crash 5 and no output
}

}  // namespace

SCaseContext::SCaseContext() : SCaseContext(0) {}
SCaseContext::SCaseContext(std::uint64_t runDate)
    : uiRunDate(runDate), pClock(&SystemRunClock()), pChildStarter(&DefaultChildStarter()) {}
SCaseContext::SCaseContext(const SRunContext& run)
    : uiRunDate(run.date.GetValue()),
      libraries(run.setup.dllFiles),
      pClock(&run.clock),
      pChildStarter(&run.childStarter) {}
// The child goes first: it may still be waiting for a request.
SCaseContext::~SCaseContext() { child.reset(); }

IWorkBuffer& AcquireSharedWorkBuffer(const CString& sDataDir, const SRunOptions& options, SCaseContext& context) {
  if (options.bIsolated) {
    context.sMemoryId.Empty();
    context.sRequestEventId.Empty();
    context.sResponseEventId.Empty();
    context.child.reset();
    context.sharedBuffer.reset();
    context.requestEvent.reset();
    context.responseEvent.reset();
  }
  if (context.sMemoryId.IsEmpty()) {
    context.sMemoryId = newId();
    context.sharedBuffer = std::make_unique<CSharedMemoryWorkBuffer>(context.sMemoryId, false);
  }
  if (context.sRequestEventId.IsEmpty()) {
    context.sRequestEventId = newId();
    context.requestEvent = std::make_unique<CNamedEvent>(context.sRequestEventId, false);
  }
  if (context.sResponseEventId.IsEmpty()) {
    context.sResponseEventId = newId();
    context.responseEvent = std::make_unique<CNamedEvent>(context.sResponseEventId, false);
  }
  if (!context.child) context.child = context.pChildStarter->Start(sDataDir, context);
  return *context.sharedBuffer;
}

void RunCaseInChild(SCaseContext& context, unsigned int uiTimeOutSec, const Run::SCallbacks& callbacks,
                    SCaseResult& row) {
  if (!context.child) return;
  row.iProcessIndex = static_cast<std::int32_t>(context.child->uiIndex);
  context.requestEvent->Set();
  const std::int64_t start = context.pClock->Now();
  const CNamedEvent::EWaitResult waited = context.pClock->Wait(*context.responseEvent, sc_uiChildPollMs);
  if (waited == CNamedEvent::eWaitSignalled) return;
  superviseChild(context, uiTimeOutSec, callbacks, start, waited);
}

void ServeExternalCases(const SSetup& setup, CEnvironment& env, IRunClock& clock) {
  if (setup.sMemoryId.IsEmpty() || setup.sRequestEventId.IsEmpty() || setup.sResponseEventId.IsEmpty())
    XB_THROW("TestSuite::Run::RunExternalExecution");
  CNamedEvent requestEvent(setup.sRequestEventId, true);
  CNamedEvent responseEvent(setup.sResponseEventId, true);
  CSharedMemoryWorkBuffer buffer(setup.sMemoryId, true);
  PrepareProcess(setup, env);
  while (clock.Wait(requestEvent, sc_uiChildIdleMs) == CNamedEvent::eWaitSignalled) {
    {
      SBufferAccess access = buffer.GetWriteAccess();
      RunCaseInBlock(*access.pBlock, clock);
    }
    responseEvent.Set();
  }
}

void Run::RunExternalExecution(const SSetup& setup, CEnvironment& env) {
  ServeExternalCases(setup, env, SystemRunClock());
}

}  // namespace TestSuite
