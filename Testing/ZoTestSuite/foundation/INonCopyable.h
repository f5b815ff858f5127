// INonCopyable: the base of classes whose objects have an identity and are
// neither copied nor assigned. Its virtual destructor lets such an object be
// deleted through this base.
#pragma once

class INonCopyable {
 public:
  virtual ~INonCopyable() = default;

  INonCopyable(const INonCopyable&) = delete;
  INonCopyable& operator=(const INonCopyable&) = delete;

 protected:
  INonCopyable() = default;
};
