// IDebugging: the optional interface through which a test class takes
// debug options of a run.
//
// A test class implements it beside ZoUnitTest. Before a case runs, the
// system asks for keys 1, 2 and 0, in this order, whether the class supports
// them, and sets those it supports to the run's values. What a key means is
// the class's own business.
#pragma once

#include "CString.h"

class IDebugging {
 public:
  // A short text for people on what `key` does in this class; the system
  // itself never asks.
  virtual CString GetOptionDescription(int key) const {
    (void)key;
    return CString();
  }
  virtual bool SupportsOption(int key) = 0;
  virtual void SetOption(int key, bool value) = 0;

 protected:
  // Instances are owned and destroyed as the test class they belong to.
  ~IDebugging() = default;
};
