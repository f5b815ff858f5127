// Named semaphores on Linux: POSIX named semaphores ("/" + name, under
// /dev/shm as "sem." + name), waited on with sem_clockwait on the
// monotonic clock.
#include <fcntl.h>
#include <semaphore.h>
#include <time.h>

#include <cerrno>
#include <filesystem>
#include <mutex>

#include "AbnormalEnd.h"
#include "NamedSemaphore.h"

namespace ZoPlatform::NamedSemaphore {

namespace {

constexpr std::size_t sc_uiMaxNameBytes = 240;
constexpr const char* sc_szObjectDirectory = "/dev/shm";
constexpr const char* sc_szFilePrefix = "sem.";

bool isValidName(const std::string& name) {
  return !name.empty() && name.size() <= sc_uiMaxNameBytes && name.find('/') == std::string::npos;
}

std::string systemName(const std::string& name) { return "/" + name; }

// Where the semaphore appears in the file system, for a removal from a
// signal handler.
std::string filePath(const std::string& name) {
  return std::string(sc_szObjectDirectory) + "/" + sc_szFilePrefix + name;
}

sem_t* handle(void* semaphore) { return static_cast<sem_t*>(semaphore); }

// sem_open and sem_close share the C library's table of the process's
// semaphores, whose own lock the thread sanitizer cannot see; this one it
// can, and they are rare enough for one lock.
std::mutex& tableLock() {
  static std::mutex lock;
  return lock;
}

sem_t* openSemaphore(const std::string& name, int flags, unsigned int initial) {
  std::lock_guard<std::mutex> guard(tableLock());
  return ::sem_open(systemName(name).c_str(), flags, 0600, initial);
}

bool fail(int code, int* error) {
  if (error) *error = code;
  return false;
}

timespec deadlineAfter(std::uint32_t milliseconds) {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  const long long nanoseconds = now.tv_nsec + static_cast<long long>(milliseconds % 1000) * 1000000LL;
  timespec deadline{};
  deadline.tv_sec =
      now.tv_sec + static_cast<time_t>(milliseconds / 1000) + static_cast<time_t>(nanoseconds / 1000000000LL);
  deadline.tv_nsec = static_cast<long>(nanoseconds % 1000000000LL);
  return deadline;
}

}  // namespace

CSemaphore::~CSemaphore() { Close(); }

bool CSemaphore::Create(const std::string& name, unsigned int initial, int* error) {
  Close();
  if (!isValidName(name)) return fail(EINVAL, error);
  sem_t* semaphore = openSemaphore(name, O_CREAT | O_EXCL, initial);
  if (semaphore == SEM_FAILED) return fail(errno, error);
  AbnormalEnd::AddFile(filePath(name));
  m_pSemaphore = semaphore;
  return true;
}

bool CSemaphore::Open(const std::string& name, int* error) {
  Close();
  if (!isValidName(name)) return fail(EINVAL, error);
  sem_t* semaphore = openSemaphore(name, 0, 0);
  if (semaphore == SEM_FAILED) return fail(errno, error);
  m_pSemaphore = semaphore;
  return true;
}

void CSemaphore::Close() {
  if (m_pSemaphore) {
    std::lock_guard<std::mutex> guard(tableLock());
    ::sem_close(handle(m_pSemaphore));
  }
  m_pSemaphore = nullptr;
}

bool CSemaphore::Post() { return m_pSemaphore && ::sem_post(handle(m_pSemaphore)) == 0; }

int CSemaphore::GetValue() const {
  int value = 0;
  if (!m_pSemaphore || ::sem_getvalue(handle(m_pSemaphore), &value) != 0) return -1;
  return value;
}

EWaitResult CSemaphore::Wait(std::uint32_t milliseconds) {
  if (!m_pSemaphore) return EWaitResult::eFailed;
  const timespec deadline = deadlineAfter(milliseconds);
  for (;;) {
    if (::sem_clockwait(handle(m_pSemaphore), CLOCK_MONOTONIC, &deadline) == 0) return EWaitResult::eSignalled;
    if (errno == EINTR) continue;
    return errno == ETIMEDOUT ? EWaitResult::eTimedOut : EWaitResult::eFailed;
  }
}

bool Remove(const std::string& name) {
  if (!isValidName(name)) return false;
  AbnormalEnd::RemoveFile(filePath(name));
  return ::sem_unlink(systemName(name).c_str()) == 0;
}

bool Exists(const std::string& name) {
  if (!isValidName(name)) return false;
  CSemaphore semaphore;
  int error = 0;
  return semaphore.Open(name, &error) || error == EACCES;
}

std::vector<std::string> ListNames(const std::string& prefix) {
  const std::string filePrefix = sc_szFilePrefix + prefix;
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator it(sc_szObjectDirectory, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (name.compare(0, filePrefix.size(), filePrefix) == 0)
      names.push_back(name.substr(filePrefix.size() - prefix.size()));
  }
  return names;
}

}  // namespace ZoPlatform::NamedSemaphore
