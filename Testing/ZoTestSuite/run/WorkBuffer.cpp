// The heap work buffer and the view of a block that an access gives.
#include "run/WorkBuffer.h"

namespace TestSuite {

CHeapWorkBuffer::CHeapWorkBuffer() : m_block(std::make_unique<SWorkBlock>()) { ResetWorkBlock(*m_block); }

}  // namespace TestSuite
