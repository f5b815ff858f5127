// Thread: thread names through pthreads.
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include "Thread.h"

namespace ZoPlatform::Thread {

void SetCurrentName(const std::string& name) {
  std::string text = name;
  if (text.size() > 15) {
    std::size_t cut = 15;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;
    text.resize(cut);
  }
  pthread_setname_np(pthread_self(), text.c_str());
}

std::string GetCurrentName() {
  char buffer[16] = {};
  if (pthread_getname_np(pthread_self(), buffer, sizeof buffer) != 0) return std::string();
  return buffer;
}

bool UseProcessAffinityAndNormalPriority() {
  cpu_set_t processors;
  CPU_ZERO(&processors);
  bool ok = sched_getaffinity(getpid(), sizeof processors, &processors) == 0 &&
            pthread_setaffinity_np(pthread_self(), sizeof processors, &processors) == 0;
  const sched_param normal{};
  ok = pthread_setschedparam(pthread_self(), SCHED_OTHER, &normal) == 0 && ok;
  return ok;
}

}  // namespace ZoPlatform::Thread
