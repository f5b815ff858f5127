// CSharedMemoryWorkBuffer: a work block in shared memory under a name, the
// block through which a parent and its child process hand a case over.
//
// The creating side makes the block and removes its name when it goes; the
// other side only opens it. Each access opens the block anew by name and
// maps it for as long as the access lives, so no view is held between the
// uses; unless the owner keeps a view: a side that uses the block for many
// cases maps it once, at its first access after KeepView, and unmaps it
// when the buffer goes.
#pragma once

#include <cstdint>

#include "foundation/platform/SharedMemory.h"
#include "run/WorkBuffer.h"

namespace TestSuite {

class CSharedMemoryWorkBuffer : public IWorkBuffer {
 public:
  // Without `openOnly` makes the block, all zero, under the name (which
  // must be free) and throws XbException if that fails; with it does
  // nothing.
  CSharedMemoryWorkBuffer(const CString& name, bool openOnly);
  ~CSharedMemoryWorkBuffer() override;
  CSharedMemoryWorkBuffer(const CSharedMemoryWorkBuffer&) = delete;
  CSharedMemoryWorkBuffer& operator=(const CSharedMemoryWorkBuffer&) = delete;

  // A view to write; throws XbException if the block cannot be opened or
  // mapped.
  SBufferAccess GetWriteAccess() override;
  // A view to read only: the block must not be written through it.
  SBufferAccess GetReadAccess() override;

  // From now on every access goes through one view, read and write, mapped
  // at the first access and held until the buffer goes. The accesses then
  // release nothing.
  void KeepView() { m_bKeepView = true; }

  const CString& GetName() const { return sName; }

 private:
  SBufferAccess keptAccess(const char* szFunction);

  CString sName;
  bool bCreated;  // this side made the block and removes its name
  bool m_bKeepView = false;
  ZoPlatform::SharedMemory::CView m_keptView;
};

}  // namespace TestSuite
