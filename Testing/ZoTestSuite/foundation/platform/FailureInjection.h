// FailureInjection: the switch by which tests make an operation of the
// platform fail as the operating system would let it fail, so that the
// system's answer to a failed process start, map, file open or write, or
// directory listing can be tested without a broken machine.
//
// Off by default; the platform's own code asks ShouldFail before each such
// call and fails on its usual path, with the usual error value, when the
// answer is yes. Safe to use from several threads.
#pragma once

namespace ZoPlatform::FailureInjection {

enum class EOperation {
  eProcessStart,      // Process::CChild::Start
  eSharedMemoryMap,   // SharedMemory::Create and CView::Open
  eFileOpen,          // opening a file for reading or writing
  eFileWrite,         // writing to an open file, and closing it
  eDirectoryListing,  // Files::ListDirectory
};

// From now on every call of `operation` fails, until Clear; with `uiSpared`,
// the next that many calls still succeed first.
void Fail(EOperation operation, unsigned int uiSpared = 0);
void Clear(EOperation operation);
bool ShouldFail(EOperation operation);

// Makes `operation` fail for as long as it lives.
class CScopedFailure {
 public:
  explicit CScopedFailure(EOperation operation, unsigned int uiSpared = 0) : m_eOperation(operation) {
    Fail(operation, uiSpared);
  }
  ~CScopedFailure() { Clear(m_eOperation); }
  CScopedFailure(const CScopedFailure&) = delete;
  CScopedFailure& operator=(const CScopedFailure&) = delete;

 private:
  EOperation m_eOperation;
};

}  // namespace ZoPlatform::FailureInjection
