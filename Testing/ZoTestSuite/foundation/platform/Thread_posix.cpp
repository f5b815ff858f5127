// Thread: joinable threads and thread names through pthreads.
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include "Thread.h"

namespace ZoPlatform::Thread {

static_assert(sizeof(pthread_t) <= sizeof(std::uintptr_t), "a pthread_t must fit the handle");

CJoinableThread::~CJoinableThread() { Join(); }

// The new thread reads the function and its argument from this object,
// which outlives it: it is joined before it goes.
bool CJoinableThread::Start(void (*function)(void*), void* argument) {
  if (m_bJoinable) return false;
  m_pfnFunction = function;
  m_pArgument = argument;
  auto run = [](void* data) -> void* {
    const auto* self = static_cast<const CJoinableThread*>(data);
    self->m_pfnFunction(self->m_pArgument);
    return nullptr;
  };
  pthread_t thread;
  if (pthread_create(&thread, nullptr, run, this) != 0) return false;
  m_uiHandle = static_cast<std::uintptr_t>(thread);
  m_bJoinable = true;
  return true;
}

void CJoinableThread::Join() {
  if (!m_bJoinable) return;
  pthread_join(static_cast<pthread_t>(m_uiHandle), nullptr);
  m_bJoinable = false;
}

void SetCurrentName(const char* name) {
  char text[16] = {};
  std::size_t cut = 0;
  while (cut < 15 && name[cut] != '\0') ++cut;
  if (name[cut] != '\0')
    while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80) --cut;
  for (std::size_t i = 0; i < cut; ++i) text[i] = name[i];
  pthread_setname_np(pthread_self(), text);
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
