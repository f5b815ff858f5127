#include "IsolationFrontEnd.h"

namespace IsolationTestClasses {

const CPrivateFrontEnd& IsolationFrontEnd() {
  static const CPrivateFrontEnd frontEnd({"isolation_CrashClasses"});
  return frontEnd;
}

}  // namespace IsolationTestClasses
