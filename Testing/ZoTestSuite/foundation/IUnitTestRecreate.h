// IUnitTestRecreate: the optional interface of a test class that can renew
// the reference data of its subtests.
//
// The system asks CanRecreate for one subtest and, if the answer is true,
// calls Recreate for it. A class without the interface, or whose CanRecreate
// says false, has no renewable data for that subtest.
#pragma once

#include "CString.h"

class IUnitTestRecreate {
 public:
  // A short text for people on what recreating `subtest` renews; the system
  // itself never asks.
  virtual CString GetRecreateDescription(unsigned int subtest) const {
    (void)subtest;
    return CString();
  }
  virtual bool CanRecreate(unsigned int subtest) = 0;
  // Writes new reference data for `subtest`. The result is for the class's
  // own use; the system ignores it.
  virtual bool Recreate(unsigned int subtest) = 0;

 protected:
  // Instances are owned and destroyed as the test class they belong to.
  ~IUnitTestRecreate() = default;
};
