// Thread: what the foundation's threads need of the platform beyond
// std::thread. Names are UTF-8.
#pragma once

#include <cstdint>
#include <string>

namespace ZoPlatform::Thread {

// A thread that its owner starts and joins. Unlike std::thread, starting one
// takes nothing through malloc, so a pool may start its workers while a
// case's heap is measured without leaving a trace in the figures.
class CJoinableThread {
 public:
  CJoinableThread() = default;
  // Joins a thread that was started and not joined yet.
  ~CJoinableThread();
  CJoinableThread(const CJoinableThread&) = delete;
  CJoinableThread& operator=(const CJoinableThread&) = delete;

  // Runs `function(argument)` on a new thread. False if the system gives no
  // thread, or one was started already.
  bool Start(void (*function)(void*), void* argument);
  // Waits for the end of the thread; returns at once if none was started or
  // it has been joined.
  void Join();

 private:
  void (*m_pfnFunction)(void*) = nullptr;
  void* m_pArgument = nullptr;
  std::uintptr_t m_uiHandle = 0;
  bool m_bJoinable = false;
};

// Names the calling thread for debuggers and process listings. The system
// keeps at most 15 bytes; a longer name is cut on a character boundary.
// Takes no memory: a thread that names itself as it starts must not show in
// the heap figures of a case that runs meanwhile.
void SetCurrentName(const char* name);
// The name of the calling thread, as the system keeps it.
std::string GetCurrentName();
// Lets the calling thread run on the processors that the process may use
// (the set of its main thread) at normal scheduling priority, whatever the
// thread that started it had. False if either cannot be set; the thread
// then keeps what it had.
bool UseProcessAffinityAndNormalPriority();

}  // namespace ZoPlatform::Thread
