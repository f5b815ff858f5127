// CFile: reading a binary file through the platform's descriptor calls.
#include "CFile.h"

#include "SystemPath.h"
#include "XbException.h"
#include "platform/Files.h"

namespace Files = ZoPlatform::Files;

CFile::~CFile() { Close(); }

bool CFile::Open(const CString& path, unsigned int flags) {
  Close();
  if ((flags & ~static_cast<unsigned int>(typeBinary)) != modeRead) return false;
  m_iDescriptor = Files::OpenForReading(PathToSystem(path));
  return IsOpen();
}

void CFile::Close() {
  Files::CloseDescriptor(m_iDescriptor);
  m_iDescriptor = -1;
}

std::uint64_t CFile::GetLength() const {
  SStatus status;
  if (!GetStatus(status)) XB_THROW("CFile::GetLength");
  return status.uiSize;
}

unsigned int CFile::Read(void* buffer, unsigned int count) {
  if (!IsOpen()) XB_THROW("CFile::Read");
  auto* bytes = static_cast<unsigned char*>(buffer);
  unsigned int uiDone = 0;
  while (uiDone < count) {
    const std::int64_t n = Files::ReadSome(m_iDescriptor, bytes + uiDone, count - uiDone);
    if (n < 0) XB_THROW("CFile::Read");
    if (n == 0) break;
    uiDone += static_cast<unsigned int>(n);
  }
  return uiDone;
}

bool CFile::GetStatus(SStatus& status) const {
  if (!IsOpen()) return false;
  const auto fileStatus = Files::GetOpenFileStatus(m_iDescriptor);
  if (!fileStatus) return false;
  status.uiModificationTime = fileStatus->uiModificationTime;
  status.uiCreationTime = fileStatus->GetCreationTime();
  status.uiSize = static_cast<std::uint64_t>(fileStatus->iSize);
  return true;
}
