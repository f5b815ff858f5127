// IObject: the root of every class that the type registry can create.
//
// It adds nothing to the virtual table but the destructor, so that the
// virtual tables of derived classes begin exactly as their authors declare
// them.
#pragma once

#include "XbRTTI.h"

class IObject {
 public:
  // Record of IObject itself; every registered class descends from it.
  static const XbRTTI RTTI;

  virtual ~IObject() = 0;

  // True if this object is an instance of the class of `rtti` or of a class
  // derived from it. The test is made on the object's dynamic type, so it
  // also holds for derived classes that are not registered themselves.
  bool IsKindOf(const XbRTTI& rtti) const { return rtti.IsInstance(*this); }
};
