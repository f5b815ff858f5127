#include "run/WorkBuffer.h"

namespace TestSuite {

CHeapWorkBuffer::CHeapWorkBuffer() : m_block(std::make_unique<SWorkBlock>()) { ResetWorkBlock(*m_block); }

}  // namespace TestSuite
