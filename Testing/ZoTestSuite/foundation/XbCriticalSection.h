// XbCriticalSection: a re-entrant lock, and XbScopedLock, which holds one
// for the lifetime of a scope.
#pragma once

#include <mutex>

class XbCriticalSection {
 public:
  void Lock() { m_mutex.lock(); }
  bool TryLock() { return m_mutex.try_lock(); }
  void Unlock() { m_mutex.unlock(); }
  // For std::lock_guard and friends.
  void lock() { Lock(); }
  void unlock() { Unlock(); }
  bool try_lock() { return TryLock(); }

 private:
  std::recursive_mutex m_mutex;
};

class XbScopedLock {
 public:
  explicit XbScopedLock(XbCriticalSection& section) : m_section(section) { m_section.Lock(); }
  ~XbScopedLock() { m_section.Unlock(); }
  XbScopedLock(const XbScopedLock&) = delete;
  XbScopedLock& operator=(const XbScopedLock&) = delete;

 private:
  XbCriticalSection& m_section;
};
