// CSharedMemoryWorkBuffer: the work block in named shared memory.
#include "run/external/SharedMemoryWorkBuffer.h"

#include "foundation/XbException.h"
#include "foundation/platform/SharedMemory.h"
#include "run/external/ExternalObjectName.h"

namespace TestSuite {

namespace SharedMemory = ZoPlatform::SharedMemory;

namespace {

// What a view of the shared block holds until its access goes.
class CSharedMapping : public IBufferMapping {
 public:
  explicit CSharedMapping(SharedMemory::CView view) : m_view(std::move(view)) {}
  SWorkBlock* GetBlock() const { return static_cast<SWorkBlock*>(m_view.GetData()); }

 private:
  SharedMemory::CView m_view;
};

// Null if the block cannot be opened or mapped.
SBufferAccess mapBlock(const CString& name, SharedMemory::EAccess access) {
  SharedMemory::CView view;
  if (!view.Open(MakeExternalObjectName(name), sizeof(SWorkBlock), access)) return SBufferAccess();
  auto mapping = std::make_unique<CSharedMapping>(std::move(view));
  SWorkBlock* block = mapping->GetBlock();
  return SBufferAccess(std::move(mapping), block);
}

}  // namespace

CSharedMemoryWorkBuffer::CSharedMemoryWorkBuffer(const CString& name, bool openOnly) : sName(name), bCreated(false) {
  if (openOnly) return;
  if (!SharedMemory::Create(MakeExternalObjectName(sName), sizeof(SWorkBlock)))
    XB_THROW("TestSuite::Run::CSharedMemoryWorkBuffer::CSharedMemoryWorkBuffer");
  bCreated = true;
}

CSharedMemoryWorkBuffer::~CSharedMemoryWorkBuffer() {
  m_keptView.Close();
  if (bCreated) SharedMemory::Remove(MakeExternalObjectName(sName));
}

// A kept view is mapped for writing, since it serves both kinds of access.
SBufferAccess CSharedMemoryWorkBuffer::keptAccess(const char* szFunction) {
  if (!m_keptView.GetData() &&
      !m_keptView.Open(MakeExternalObjectName(sName), sizeof(SWorkBlock), SharedMemory::EAccess::eReadWrite))
    XB_THROW(szFunction);
  return SBufferAccess(nullptr, static_cast<SWorkBlock*>(m_keptView.GetData()));
}

SBufferAccess CSharedMemoryWorkBuffer::GetWriteAccess() {
  if (m_bKeepView) return keptAccess("TestSuite::Run::CSharedMemoryWorkBuffer::GetWriteAccess");
  SBufferAccess access = mapBlock(sName, SharedMemory::EAccess::eReadWrite);
  if (!access.pBlock) XB_THROW("TestSuite::Run::CSharedMemoryWorkBuffer::GetWriteAccess");
  return access;
}

SBufferAccess CSharedMemoryWorkBuffer::GetReadAccess() {
  if (m_bKeepView) return keptAccess("TestSuite::Run::CSharedMemoryWorkBuffer::GetReadAccess");
  SBufferAccess access = mapBlock(sName, SharedMemory::EAccess::eRead);
  if (!access.pBlock) XB_THROW("TestSuite::Run::CSharedMemoryWorkBuffer::GetReadAccess");
  return access;
}

}  // namespace TestSuite
