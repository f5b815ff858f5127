// IsolationFrontEnd: the private front end of the run tests, whose child
// processes load the test library isolation_CrashClasses, and a scope in
// which the cases of this test program go to its children.
#pragma once

#include "ChildProcess.h"
#include "isolation_PrivateFrontEnd.h"

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

}  // namespace IsolationTestClasses
