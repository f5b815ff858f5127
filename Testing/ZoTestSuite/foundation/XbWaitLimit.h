// XbWaitLimit: the time limit of the foundation's waits, in milliseconds,
// where all ones (XB_INFINITE) means no limit.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

inline constexpr unsigned int XB_INFINITE = 0xFFFFFFFFu;

// Waits on `condition` until `done()` holds or `milliseconds` have passed.
// True if `done()` holds at the end. 0 only looks.
template <typename Predicate>
bool XbWaitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock, unsigned int milliseconds,
               Predicate done) {
  if (milliseconds == XB_INFINITE) {
    condition.wait(lock, done);
    return true;
  }
  return condition.wait_for(lock, std::chrono::milliseconds(milliseconds), done);
}
