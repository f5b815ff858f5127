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

// A child that was lost with the case: whatever it left in the block, the
// row says eCaseUnknown with no output and no figures.
void loseCase(SCaseContext& context) {
  abandonChild(context);
  ClearBlockOutcome(*context.sharedBuffer->GetWriteAccess().pBlock);
}

// Case by case, how many children may end or die before they take the
// request: one that ended while idle and one that died at its start are
// replaced; more would hide a child that cannot start at all.
constexpr unsigned int sc_uiChildReplacements = 2;

// A new child for the case in the block; false if none could be started.
bool replaceChild(SCaseContext& context, SCaseResult& row) {
  context.child.reset();
  context.child = context.pChildStarter->Start(context.sDataDir, context);
  row.iProcessIndex = context.child ? static_cast<std::int32_t>(context.child->uiIndex) : -1;
  return context.child != nullptr;
}

struct SSupervision {
  const Run::SCallbacks& callbacks;
  SCaseResult& row;
  double limit;
  std::int64_t start;
  unsigned int uiReplacements;
};

// A child found dead: if it never took the request, the case goes to a new
// child; false if the case is lost with it.
bool handOverAgain(SCaseContext& context, SSupervision& supervision) {
  if (supervision.uiReplacements >= sc_uiChildReplacements) return false;
  if (context.requestEvent->Wait(0) != CNamedEvent::eWaitSignalled) return false;  // it took the case
  ++supervision.uiReplacements;
  if (!replaceChild(context, supervision.row)) return false;
  context.requestEvent->Set();
  return true;
}

// The supervision after the first wait for the answer: time limit, cancel
// query and the child's life, once a second each.
void superviseChild(SCaseContext& context, SSupervision& supervision, CNamedEvent::EWaitResult waited) {
  IRunClock& clock = *context.pClock;
  while (waited != CNamedEvent::eWaitFailed) {
    if (clock.SecondsSince(supervision.start) > supervision.limit) {
      abandonChild(context);
      writeResult(*context.sharedBuffer, Run::eCaseTimeout);
      return;
    }
    if (supervision.callbacks.fnIsCanceled()) {
      abandonChild(context);
      writeResult(*context.sharedBuffer, Run::eCaseCanceled);
      return;
    }
    if (!context.child->IsAlive() && !handOverAgain(context, supervision)) break;
    waited = clock.Wait(*context.responseEvent, sc_uiChildPollMs);
    if (waited == CNamedEvent::eWaitSignalled) return;
  }
  loseCase(context);
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
  // The last case's child is killed now but reaped only once the next one
  // has been started: the kernel tears the old process down while the new
  // one starts up.
  std::unique_ptr<SChildProcess> finished;
  if (options.bIsolated) {
    context.sMemoryId.Empty();
    context.sRequestEventId.Empty();
    context.sResponseEventId.Empty();
    finished = std::move(context.child);
    if (finished) finished->process.SendKill();
    context.sharedBuffer.reset();
    context.requestEvent.reset();
    context.responseEvent.reset();
  }
  if (context.sMemoryId.IsEmpty()) {
    context.sMemoryId = newId();
    auto buffer = std::make_unique<CSharedMemoryWorkBuffer>(context.sMemoryId, false);
    buffer->KeepView();  // the context writes and reads the block of every case until it lets go
    context.sharedBuffer = std::move(buffer);
  }
  if (context.sRequestEventId.IsEmpty()) {
    context.sRequestEventId = newId();
    context.requestEvent = std::make_unique<CNamedEvent>(context.sRequestEventId, false);
  }
  if (context.sResponseEventId.IsEmpty()) {
    context.sResponseEventId = newId();
    context.responseEvent = std::make_unique<CNamedEvent>(context.sResponseEventId, false);
  }
  context.sDataDir = sDataDir;
  if (!context.child) context.child = context.pChildStarter->Start(sDataDir, context);
  finished.reset();
  return *context.sharedBuffer;
}

void RunCaseInChild(SCaseContext& context, unsigned int uiTimeOutSec, const Run::SCallbacks& callbacks,
                    SCaseResult& row) {
  if (!context.child) return;
  SSupervision supervision{callbacks, row, static_cast<double>(uiTimeOutSec), 0, 0};
  row.iProcessIndex = static_cast<std::int32_t>(context.child->uiIndex);
  // A child that ended while it waited (its idle rule, a kill from outside)
  // would never take the case.
  if (!context.child->IsAlive()) {
    ++supervision.uiReplacements;
    if (!replaceChild(context, row)) return;
  }
  context.requestEvent->Set();
  supervision.start = context.pClock->Now();
  const CNamedEvent::EWaitResult waited = context.pClock->Wait(*context.responseEvent, sc_uiChildPollMs);
  if (waited == CNamedEvent::eWaitSignalled) return;
  superviseChild(context, supervision, waited);
}

void ServeExternalCases(const SSetup& setup, CEnvironment& env, IRunClock& clock) {
  if (setup.sMemoryId.IsEmpty() || setup.sRequestEventId.IsEmpty() || setup.sResponseEventId.IsEmpty())
    XB_THROW("TestSuite::Run::RunExternalExecution");
  CNamedEvent requestEvent(setup.sRequestEventId, true);
  CNamedEvent responseEvent(setup.sResponseEventId, true);
  CSharedMemoryWorkBuffer buffer(setup.sMemoryId, true);
  buffer.KeepView();  // mapped at the first request, for all cases of this child
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
