// CaseBlock: a case run through a work block in this process.
#include "CaseBlock.h"

#include "foundation/XbDateTime.h"
#include "run/CaseExecution.h"
#include "run/RunClock.h"

namespace TestSupport {

std::unique_ptr<TestSuite::SWorkBlock> MakeCaseBlock(const CString& className, const CString& caseName,
                                                     const TestSuite::SRunOptions& options, const CString& dataDir,
                                                     std::uint64_t runDate) {
  using TestSuite::SWorkBlock;
  auto block = std::make_unique<SWorkBlock>();
  TestSuite::ResetWorkBlock(*block);
  TestSuite::StoreBlockText(block->sClassName, SWorkBlock::sc_uiTextUnits, className);
  TestSuite::StoreBlockText(block->sCaseName, SWorkBlock::sc_uiTextUnits, caseName);
  TestSuite::StoreBlockText(block->sDataDir, SWorkBlock::sc_uiTextUnits, dataDir);
  block->uiRunDate = runDate;
  TestSuite::StoreRunOptions(*block, options);
  return block;
}

std::unique_ptr<TestSuite::SWorkBlock> RunCaseThroughBlock(const CString& className, const CString& caseName,
                                                           const TestSuite::SRunOptions& options,
                                                           const CString& dataDir) {
  auto block = MakeCaseBlock(className, caseName, options, dataDir, XbDateTime::Now().GetValue());
  TestSuite::RunCaseInBlock(*block, TestSuite::SystemRunClock());
  return block;
}

CString BlockOutput(const TestSuite::SWorkBlock& block) {
  return TestSuite::LoadBlockText(block.output, TestSuite::SWorkBlock::sc_uiOutputUnits);
}

}  // namespace TestSupport
