// CFile: a binary file of the platform's class library, opened for reading
// and read in blocks of the caller's size.
#pragma once

#include <cstdint>

#include "CString.h"

class CFile {
 public:
  // Only reading is offered; typeBinary is accepted for the callers' sake
  // (every file is binary here).
  enum EOpenFlags : unsigned int { modeRead = 0x0000, typeBinary = 0x8000 };

  // The file's times in microseconds since the epoch. The creation time is
  // the birth time where the file system keeps one, else the modification
  // time.
  struct SStatus {
    std::uint64_t uiCreationTime = 0;
    std::uint64_t uiModificationTime = 0;
    std::uint64_t uiSize = 0;
  };

  CFile() = default;
  ~CFile();
  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;

  // False if the file cannot be opened for reading, is no regular file (a
  // FIFO or a device is refused without waiting) or `flags` asks for more
  // than reading. A file that was open is closed first.
  bool Open(const CString& path, unsigned int flags);
  void Close();
  bool IsOpen() const { return m_iDescriptor >= 0; }

  // Size in bytes. Throws XbException if the file is not open or cannot be
  // examined.
  std::uint64_t GetLength() const;
  // Reads up to `count` bytes at the current position, as many as there
  // are; fewer only at the end. Throws XbException on a read error or if
  // the file is not open.
  unsigned int Read(void* buffer, unsigned int count);
  // False if the file is not open or cannot be examined.
  bool GetStatus(SStatus& status) const;

 private:
  int m_iDescriptor = -1;
};
