// External execution when the system refuses: a child that cannot be
// started costs its case only and says nothing; a block that cannot be made
// or mapped ends the case with the block's own exception.
#include <gtest/gtest.h>

#include "IsolationFrontEnd.h"
#include "RunTestClasses.h"
#include "foundation/XbException.h"
#include "foundation/platform/FailureInjection.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
using IsolationTestClasses::CIsolationContext;
using ZoPlatform::FailureInjection::CScopedFailure;
using ZoPlatform::FailureInjection::EOperation;

namespace {

SCaseResult execute(const SUnitTest& unitTest, unsigned int caseIndex, SCaseContext& context) {
  SSetup setup;
  setup.sDataDir = L"/data/tree/";
  SRunOptions options;
  options.bExternal = true;
  return RunTestClasses::ExecuteOneCase(setup, unitTest, caseIndex, options, context);
}

// The name of the exception that the case ends with; empty if none.
std::string failureOf(const SUnitTest& unitTest, unsigned int caseIndex, SCaseContext& context) {
  try {
    execute(unitTest, caseIndex, context);
  } catch (const XbException& error) { return error.what(); }
  return std::string();
}

class ExternalExecutionFailures : public IsolationTestClasses::CIsolationTest {};

}  // namespace

TEST_F(ExternalExecutionFailures, AChildThatCannotBeStartedCostsItsCaseAndTheNextStartsOne) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b"});
  CIsolationContext context;
  COutRecorder recorder;
  SCaseResult refused;
  {
    CScopedFailure failure(EOperation::eProcessStart);
    refused = execute(unitTest, 0, context);
  }
  EXPECT_EQ(refused.eResult, Run::eCaseUnknown);
  EXPECT_EQ(refused.iProcessIndex, -1);
  EXPECT_TRUE(refused.sOutput.IsEmpty());
  EXPECT_TRUE(recorder.Text().IsEmpty()) << recorder.Text().ToUtf8();
  const SCaseResult next = execute(unitTest, 1, context);
  EXPECT_EQ(next.eResult, Run::eCaseOk);
  EXPECT_GE(next.iProcessIndex, 0);
}

TEST_F(ExternalExecutionFailures, ABlockThatCannotBeMadeEndsTheCaseWithItsException) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a"});
  CIsolationContext context;
  CScopedFailure failure(EOperation::eSharedMemoryMap);
  EXPECT_EQ(failureOf(unitTest, 0, context), "TestSuite::Run::CSharedMemoryWorkBuffer::CSharedMemoryWorkBuffer");
}

// The parent maps a block once and keeps the view for every case of the
// context, so a mapping that would fail later is never attempted.
TEST_F(ExternalExecutionFailures, AKeptBlockIsNotMappedAgainForLaterCases) {
  const SUnitTest unitTest = RunTestClasses::MakeClass(L"IsoPass", {L"a", L"b", L"c"});
  CIsolationContext context;
  ASSERT_EQ(execute(unitTest, 0, context).eResult, Run::eCaseOk);
  {
    CScopedFailure failure(EOperation::eSharedMemoryMap);
    EXPECT_EQ(execute(unitTest, 1, context).eResult, Run::eCaseOk);
  }
  EXPECT_EQ(execute(unitTest, 2, context).eResult, Run::eCaseOk);
}
