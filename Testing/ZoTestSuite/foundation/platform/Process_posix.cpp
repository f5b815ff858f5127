// Child processes of the platform on Linux: posix_spawn, a pidfd to wait
// on (waitpid polling where the kernel has none), SIGKILL and waitpid.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <thread>
#include <utility>

#include "Process.h"

extern char** environ;

namespace ZoPlatform::Process {

namespace {

using Clock = std::chrono::steady_clock;

// Releases the spawn attributes and file actions when the scope ends.
struct SSpawnSetup {
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;
  SSpawnSetup() {
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_init(&actions);
  }
  ~SSpawnSetup() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SSpawnSetup(const SSpawnSetup&) = delete;
  SSpawnSetup& operator=(const SSpawnSetup&) = delete;
};

// The child starts with no blocked signals and the default action for
// every signal, whatever the parent has ignored or blocked.
int prepareSignals(posix_spawnattr_t& attributes) {
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  return posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

int prepareActions(posix_spawn_file_actions_t& actions, const SSpawnRequest& request) {
  if (request.eStreams == EStandardStreams::eNull) {
    const int modes[3] = {O_RDONLY, O_WRONLY, O_WRONLY};
    for (int fd = 0; fd < 3; ++fd)
      if (const int rc = posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", modes[fd], 0)) return rc;
  }
  if (!request.sWorkingDirectory.empty())
    return posix_spawn_file_actions_addchdir_np(&actions, request.sWorkingDirectory.c_str());
  return 0;
}

// A relative program path with '/' would otherwise be looked up from the
// child's new working directory.
std::string programPath(const std::string& name) {
  if (name.empty() || name[0] == '/' || name.find('/') == std::string::npos) return name;
  char buffer[PATH_MAX];
  if (!::getcwd(buffer, sizeof buffer)) return name;
  return std::string(buffer) + "/" + name;
}

int openPidFd(int pid) {
#ifdef SYS_pidfd_open
  const long fd = ::syscall(SYS_pidfd_open, pid, 0);
  return fd < 0 ? -1 : static_cast<int>(fd);
#else
  (void)pid;
  return -1;
#endif
}

}  // namespace

CChild::~CChild() { release(); }

CChild::CChild(CChild&& other) noexcept
    : m_iPid(std::exchange(other.m_iPid, 0)),
      m_iPidFd(std::exchange(other.m_iPidFd, -1)),
      m_bReaped(std::exchange(other.m_bReaped, false)),
      m_exitStatus(other.m_exitStatus) {}

CChild& CChild::operator=(CChild&& other) noexcept {
  if (this != &other) {
    release();
    m_iPid = std::exchange(other.m_iPid, 0);
    m_iPidFd = std::exchange(other.m_iPidFd, -1);
    m_bReaped = std::exchange(other.m_bReaped, false);
    m_exitStatus = other.m_exitStatus;
  }
  return *this;
}

void CChild::release() {
  Kill();
  if (m_iPidFd >= 0) ::close(m_iPidFd);
  m_iPidFd = -1;
}

bool CChild::Start(const SSpawnRequest& request, int* error) {
  int rc = EINVAL;
  if (!IsStarted() && !request.arguments.empty()) {
    std::vector<char*> argv;
    for (const std::string& word : request.arguments) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    const std::string program = programPath(request.arguments[0]);
    SSpawnSetup setup;
    pid_t pid = 0;
    rc = prepareSignals(setup.attributes);
    if (rc == 0) rc = prepareActions(setup.actions, request);
    if (rc == 0) rc = ::posix_spawnp(&pid, program.c_str(), &setup.actions, &setup.attributes, argv.data(), environ);
    if (rc == 0) {
      m_iPid = pid;
      m_iPidFd = openPidFd(pid);
    }
  }
  if (rc != 0 && error) *error = rc;
  return rc == 0;
}

bool CChild::tryReap(bool block) {
  if (m_iPid <= 0) return m_bReaped;
  int status = 0;
  pid_t rc;
  do { rc = ::waitpid(m_iPid, &status, block ? 0 : WNOHANG); } while (rc < 0 && errno == EINTR);
  if (rc == 0) return false;
  if (rc == m_iPid) {
    m_exitStatus.bSignaled = WIFSIGNALED(status);
    m_exitStatus.iCode = m_exitStatus.bSignaled ? WTERMSIG(status) : WEXITSTATUS(status);
  }
  // rc < 0 (ECHILD): someone else reaped it; nothing is left to wait for.
  m_iPid = 0;
  m_bReaped = true;
  if (m_iPidFd >= 0) ::close(m_iPidFd);
  m_iPidFd = -1;
  return true;
}

bool CChild::IsRunning() { return m_iPid > 0 && !tryReap(false); }

bool CChild::WaitFor(std::uint32_t milliseconds) {
  if (m_iPid <= 0) return m_bReaped;
  const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
  auto pause = std::chrono::milliseconds(1);
  while (!tryReap(false)) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return false;
    if (m_iPidFd >= 0) {
      pollfd entry{m_iPidFd, POLLIN, 0};
      ::poll(&entry, 1, static_cast<int>(std::min<long long>(left, INT_MAX)));
    } else {
      std::this_thread::sleep_for(std::min<std::chrono::milliseconds>(pause, std::chrono::milliseconds(left)));
      pause = std::min(pause * 2, std::chrono::milliseconds(20));
    }
  }
  return true;
}

void CChild::Kill() {
  if (m_iPid <= 0) return;
  ::kill(m_iPid, SIGKILL);
  tryReap(true);
}

}  // namespace ZoPlatform::Process
