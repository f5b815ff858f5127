// IsolationFrontEnd: the private front end of the run tests, whose child
// processes load the test library isolation_CrashClasses; its starter and a
// case context whose children it starts; and the fixture of the tests that
// start children.
#pragma once

#include <gtest/gtest.h>

#include "foundation/platform/System.h"
#include "isolation_PrivateFrontEnd.h"
#include "run/external/ChildProcess.h"

namespace IsolationTestClasses {

// Made on first use, removed when the test program ends.
const CPrivateFrontEnd& IsolationFrontEnd();

// Starts children from the private front end.
TestSuite::IChildStarter& IsolationStarter();

// A case context on the system's clock whose children come from the
// private front end.
struct CIsolationContext : TestSuite::SCaseContext {
  CIsolationContext() { pChildStarter = &IsolationStarter(); }
};

// After every test no child of the private front end runs and no block or
// event of this process remains.
class CIsolationTest : public ::testing::Test {
 protected:
  void TearDown() override {
    EXPECT_TRUE(ProcessesRunningFrom(IsolationFrontEnd().Directory()).empty()) << "a child outlived its test";
    EXPECT_TRUE(ExternalObjectsOfProcess(ZoPlatform::System::GetProcessId()).empty()) << "a name outlived its test";
  }
};

}  // namespace IsolationTestClasses
