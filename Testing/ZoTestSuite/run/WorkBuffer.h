// IWorkBuffer: the owner of one work block, and SBufferAccess, a view of
// the block that releases whatever it mapped when it goes out of scope.
// CHeapWorkBuffer is the owner for cases that run in this process.
#pragma once

#include <memory>

#include "run/WorkBlock.h"

namespace TestSuite {

// Whatever a view holds (a mapping of shared memory); released in its
// destructor.
class IBufferMapping {
 public:
  virtual ~IBufferMapping() = default;
};

struct SBufferAccess {
  std::unique_ptr<IBufferMapping> hMapping;  // null if there is nothing to release
  SWorkBlock* pBlock = nullptr;

  SBufferAccess() = default;
  SBufferAccess(std::unique_ptr<IBufferMapping> mapping, SWorkBlock* block)
      : hMapping(std::move(mapping)), pBlock(block) {}
  SBufferAccess(SBufferAccess&&) = default;
  SBufferAccess& operator=(SBufferAccess&&) = default;
  SBufferAccess(const SBufferAccess&) = delete;
  SBufferAccess& operator=(const SBufferAccess&) = delete;
};

class IWorkBuffer {
 public:
  virtual SBufferAccess GetWriteAccess() = 0;
  virtual SBufferAccess GetReadAccess() = 0;
  virtual ~IWorkBuffer() = default;
};

// One block on the heap, zero-filled and then set to the run options'
// defaults with the result eCaseUnknown.
class CHeapWorkBuffer : public IWorkBuffer {
 public:
  CHeapWorkBuffer();
  SBufferAccess GetWriteAccess() override { return SBufferAccess(nullptr, m_block.get()); }
  SBufferAccess GetReadAccess() override { return SBufferAccess(nullptr, m_block.get()); }

 private:
  std::unique_ptr<SWorkBlock> m_block;
};

}  // namespace TestSuite
