// ZoTimeTracker: named, accumulated timings that test code may record per
// thread (ZoTimeTracker::CScope around a piece of work).
#pragma once

#include <chrono>
#include <cstdint>

#include "CString.h"
#include "XbArray.h"

class ZoTimeTracker {
 public:
  struct SEntry {
    CString sName;
    std::uint64_t uiCount = 0;
    double dSeconds = 0.0;
  };

  // Adds one timing to the calling thread's entry of that name.
  static void Add(const wchar_t* name, double seconds);
  // The calling thread's entries in order of first use.
  static XbArray<SEntry> GetEntries();
  static void Clear();
  // Makes the calling thread's table exist, so that first use inside a
  // measured case allocates nothing.
  static void PreallocateStaticData();

  // Times the scope it lives in.
  class CScope {
   public:
    explicit CScope(const wchar_t* name) : m_name(name), m_start(std::chrono::steady_clock::now()) {}
    ~CScope() { Add(m_name, std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count()); }

   private:
    const wchar_t* m_name;
    std::chrono::steady_clock::time_point m_start;
  };
};
