// CaseBlock: one case run through a work block in this process, the way
// every execution mode runs it, for tests of what a test class sees and
// what the block says afterwards.
#pragma once

#include <memory>

#include "ZoTestSuite.h"
#include "run/WorkBlock.h"

namespace TestSupport {

// Writes the case `caseName` of the class `className` in `dataDir`, with
// `options`, into a fresh block, runs it with RunCaseInBlock and gives the
// block back (it is too large for the stack).
std::unique_ptr<TestSuite::SWorkBlock> RunCaseThroughBlock(const CString& className, const CString& caseName,
                                                           const TestSuite::SRunOptions& options = {},
                                                           const CString& dataDir = L"/nonexistent/");

// The output that the case left in `block`.
CString BlockOutput(const TestSuite::SWorkBlock& block);

}  // namespace TestSupport
