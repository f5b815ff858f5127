// IsolationFrontEnd: the private front end of the run tests, whose child
// processes load the test library isolation_CrashClasses; a scope in which
// the cases of this test program go to its children; and the fixture of the
// tests that start children.
#pragma once

#include <gtest/gtest.h>

#include "foundation/platform/System.h"
#include "isolation_PrivateFrontEnd.h"
#include "run/external/ChildProcess.h"

namespace IsolationTestClasses {

// Made on first use, removed when the test program ends.
const CPrivateFrontEnd& IsolationFrontEnd();

// While it lives, child processes are started from the private front end.
class CChildrenFromPrivateFrontEnd {
 public:
  CChildrenFromPrivateFrontEnd() {
    TestSuite::SetChildProgramDirectory(CString::FromUtf8(IsolationFrontEnd().Directory()));
  }
  ~CChildrenFromPrivateFrontEnd() { TestSuite::SetChildProgramDirectory(CString()); }
  CChildrenFromPrivateFrontEnd(const CChildrenFromPrivateFrontEnd&) = delete;
  CChildrenFromPrivateFrontEnd& operator=(const CChildrenFromPrivateFrontEnd&) = delete;
};

// Children come from the private front end; after every test no child of it
// runs and no block or event of this process remains.
class CIsolationTest : public ::testing::Test {
 protected:
  void TearDown() override {
    EXPECT_TRUE(ProcessesRunningFrom(IsolationFrontEnd().Directory()).empty()) << "a child outlived its test";
    EXPECT_TRUE(ExternalObjectsOfProcess(ZoPlatform::System::GetProcessId()).empty()) << "a name outlived its test";
  }

 private:
  CChildrenFromPrivateFrontEnd m_scope;
};

}  // namespace IsolationTestClasses
