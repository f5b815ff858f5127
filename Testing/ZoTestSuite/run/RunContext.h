// SRunContext: what every stage of one run reads: the setup, the classes,
// the run's options and callbacks, the run's date, and the clock and the
// child starter that its cases use.
#pragma once

#include "ZoTestSuite.h"

namespace TestSuite {

class IRunClock;
class IChildStarter;

// Lives as long as the run's stages; every member is read only, and all
// but the date belong to the caller of the run.
struct SRunContext {
  const SSetup& setup;
  const XbArray<SUnitTest>& classes;
  const SRunOptions& options;
  const Run::SCallbacks& callbacks;
  XbDateTime date;  // names the run and its debug directories
  IRunClock& clock;
  IChildStarter& childStarter;
};

}  // namespace TestSuite
