// XbIDumpable: the interface of an object that can write a text picture of
// its state into a stream, for diagnosis.
#pragma once

#include "CString.h"
#include "XbStream.h"

// The template argument only tells interface versions apart. A class
// implements the private `dump`; callers use `Dump`, which may grow checks
// around it without touching the implementations.
template <int TVersion>
class XbIDumpable {
 public:
  void Dump(XbStreamWriteASCIIT<CString>& stream) { dump(stream); }

 protected:
  XbIDumpable() = default;
  XbIDumpable(const XbIDumpable&) = default;
  XbIDumpable& operator=(const XbIDumpable&) = default;
  // Not virtual: nothing is deleted through this interface.
  ~XbIDumpable() = default;

 private:
  virtual void dump(XbStreamWriteASCIIT<CString>& stream) = 0;
};
