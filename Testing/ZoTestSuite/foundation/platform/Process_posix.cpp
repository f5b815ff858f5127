// Child processes of the platform on Linux: posix_spawn, a pidfd to wait
// on (waitpid polling where the kernel has none), SIGKILL and waitpid.
#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "AbnormalEnd.h"
#include "FailureInjection.h"
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
// every signal, whatever the parent has ignored or blocked; in a group of
// its own if asked.
int prepareAttributes(posix_spawnattr_t& attributes, bool ownGroup) {
  sigset_t none, all;
  sigemptyset(&none);
  sigfillset(&all);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &all);
  short flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
  if (ownGroup) {
    posix_spawnattr_setpgroup(&attributes, 0);
    flags |= POSIX_SPAWN_SETPGROUP;
  }
  return posix_spawnattr_setflags(&attributes, flags);
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
      m_bGroup(std::exchange(other.m_bGroup, false)),
      m_bReaped(std::exchange(other.m_bReaped, false)),
      m_exitStatus(other.m_exitStatus) {}

CChild& CChild::operator=(CChild&& other) noexcept {
  if (this != &other) {
    release();
    m_iPid = std::exchange(other.m_iPid, 0);
    m_iPidFd = std::exchange(other.m_iPidFd, -1);
    m_bGroup = std::exchange(other.m_bGroup, false);
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
    rc = prepareAttributes(setup.attributes, request.bOwnProcessGroup);
    if (rc == 0) rc = prepareActions(setup.actions, request);
    if (rc == 0 && FailureInjection::ShouldFail(FailureInjection::EOperation::eProcessStart)) rc = EAGAIN;
    if (rc == 0) rc = ::posix_spawnp(&pid, program.c_str(), &setup.actions, &setup.attributes, argv.data(), environ);
    if (rc == 0) {
      m_iPid = pid;
      m_iPidFd = openPidFd(pid);
      m_bGroup = request.bOwnProcessGroup;
      AbnormalEnd::AddChild(pid, m_bGroup);
    }
  }
  if (rc != 0 && error) *error = rc;
  return rc == 0;
}

// Looks whether the child has ended without reaping it, so that its id
// cannot go to another process meanwhile.
bool CChild::hasEnded(bool block) {
  siginfo_t info{};
  int rc;
  do {
    rc = ::waitid(P_PID, static_cast<id_t>(m_iPid), &info, WEXITED | WNOWAIT | (block ? 0 : WNOHANG));
  } while (rc < 0 && errno == EINTR);
  return rc < 0 || info.si_pid == m_iPid;  // rc < 0 (ECHILD): someone else reaped it
}

bool CChild::tryReap(bool block) {
  if (m_iPid <= 0) return m_bReaped;
  if (!hasEnded(block)) return false;
  AbnormalEnd::RemoveChild(m_iPid);
  // The zombie still holds the group's id: what the child left in its
  // group goes now, and no other process can be hit.
  if (m_bGroup) ::kill(-m_iPid, SIGKILL);
  int status = 0;
  pid_t rc;
  do { rc = ::waitpid(m_iPid, &status, 0); } while (rc < 0 && errno == EINTR);
  if (rc == m_iPid) {
    m_exitStatus.bSignaled = WIFSIGNALED(status);
    m_exitStatus.iCode = m_exitStatus.bSignaled ? WTERMSIG(status) : WEXITSTATUS(status);
  }
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
  SendKill();
  tryReap(true);
}

void CChild::SendKill() {
  if (m_iPid <= 0) return;
  if (m_bGroup) ::kill(-m_iPid, SIGKILL);
  ::kill(m_iPid, SIGKILL);
}

bool Exists(std::uint32_t pid) {
  if (pid == 0 || pid > static_cast<std::uint32_t>(INT_MAX)) return false;
  return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno == EPERM;
}

bool EndWithParent(std::uint32_t expectedParent) {
  if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0) return false;
  return static_cast<std::uint32_t>(::getppid()) == expectedParent;
}

namespace {

// The children of this process, as the kernel lists them for each thread.
std::vector<pid_t> childrenOfThisProcess() {
  std::vector<pid_t> children;
  const std::unique_ptr<DIR, int (*)(DIR*)> tasks(::opendir("/proc/self/task"), ::closedir);
  if (!tasks) return children;
  while (const dirent* task = ::readdir(tasks.get())) {
    if (task->d_name[0] == '.') continue;
    std::ifstream list(std::string("/proc/self/task/") + task->d_name + "/children");
    for (pid_t pid; list >> pid;) children.push_back(pid);
  }
  return children;
}

}  // namespace

unsigned int KillStrayChildren() {
  unsigned int killed = 0;
  for (const pid_t pid : childrenOfThisProcess()) {
    if (AbnormalEnd::HasChild(pid)) continue;
    ::kill(pid, SIGKILL);
    pid_t rc;
    do { rc = ::waitpid(pid, nullptr, 0); } while (rc < 0 && errno == EINTR);
    if (rc == pid) ++killed;
  }
  return killed;
}

}  // namespace ZoPlatform::Process
