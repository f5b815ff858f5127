#include "ExternalExecution.h"

#include "foundation/XbException.h"

namespace TestSuite {

struct SChildProcess {};
class CNamedEvent {};

SCaseContext::SCaseContext() = default;
SCaseContext::SCaseContext(std::uint64_t runDate) : uiRunDate(runDate) {}
SCaseContext::~SCaseContext() = default;

IWorkBuffer& AcquireSharedWorkBuffer(const CString&, const SRunOptions&, SCaseContext&) {
  XB_THROW("TestSuite::AcquireSharedWorkBuffer");
}

void RunCaseInChild(SCaseContext&, unsigned int, const Run::SCallbacks&, SCaseResult&) {
  XB_THROW("TestSuite::RunCaseInChild");
}

void Run::RunExternalExecution(const SSetup&, CEnvironment&) { XB_THROW("TestSuite::Run::RunExternalExecution"); }

}  // namespace TestSuite
