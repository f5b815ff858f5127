// The private front end of the run tests and its starter, made on first use.
#include "IsolationFrontEnd.h"

namespace IsolationTestClasses {

const CPrivateFrontEnd& IsolationFrontEnd() {
  static const CPrivateFrontEnd frontEnd({"isolation_CrashClasses"});
  return frontEnd;
}

TestSuite::IChildStarter& IsolationStarter() {
  static TestSuite::CFrontEndStarter starter(CString::FromUtf8(IsolationFrontEnd().Directory()));
  return starter;
}

}  // namespace IsolationTestClasses
