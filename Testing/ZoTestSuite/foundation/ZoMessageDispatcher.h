// ZoMessageDispatcher: a thread of its own that handles posted messages one
// after the other, in the order they were posted.
//
// Messages are accepted only while the dispatcher runs. Shutting down stops
// the acceptance; the messages already posted are still handled before the
// thread ends. After that the dispatcher can be started again. An exception
// out of a message is caught and dropped: it never ends the thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "XbWaitLimit.h"

class ZoMessageDispatcher {
 public:
  ZoMessageDispatcher();
  // Shuts down and waits without a limit.
  ~ZoMessageDispatcher();
  ZoMessageDispatcher(const ZoMessageDispatcher&) = delete;
  ZoMessageDispatcher& operator=(const ZoMessageDispatcher&) = delete;

  // Starts the thread. True if it runs afterwards (also when it ran
  // before); false if no thread could be started or a shut-down is still
  // under way.
  bool Start();
  // True from a successful Start until the thread has ended.
  bool IsRunning() const;
  // Queues `message` for the dispatcher's thread. False, and nothing is
  // queued, when the dispatcher does not run or is shutting down.
  bool Post(std::function<void()> message);
  // Stops taking messages and waits until the thread has handled the queued
  // ones and ended, at most `milliseconds` (XB_INFINITE: no limit). True if
  // the thread has ended or never ran; after false, a later call may wait
  // again. Must not be called from a message, which would wait for itself.
  bool ShutdownAndWait(unsigned int milliseconds);

 private:
  enum class EState { eStopped, eRunning, eStopping };

  void dispatch();

  mutable std::mutex m_mutex;
  std::condition_variable m_posted;
  std::condition_variable m_ended;
  std::deque<std::function<void()>> m_queue;
  EState m_eState = EState::eStopped;
  std::thread m_thread;
};
