// CaseBlock: one case run through a work block in this process, the way
// every execution mode runs it, for tests of what a test class sees and
// what the block says afterwards.
#pragma once

#include <cstdint>
#include <memory>

#include "ZoTestSuite.h"
#include "run/WorkBlock.h"

namespace TestSupport {

// A fresh block (too large for the stack) that describes the case
// `caseName` of the class `className` in `dataDir`, with `options`, run on
// `runDate`.
std::unique_ptr<TestSuite::SWorkBlock> MakeCaseBlock(const CString& className, const CString& caseName,
                                                     const TestSuite::SRunOptions& options, const CString& dataDir,
                                                     std::uint64_t runDate);

// Runs the case that MakeCaseBlock describes, run today, with RunCaseInBlock
// on the system's clock and gives the block back.
std::unique_ptr<TestSuite::SWorkBlock> RunCaseThroughBlock(const CString& className, const CString& caseName,
                                                           const TestSuite::SRunOptions& options = {},
                                                           const CString& dataDir = L"/nonexistent/");

// The output that the case left in `block`.
CString BlockOutput(const TestSuite::SWorkBlock& block);

}  // namespace TestSupport
