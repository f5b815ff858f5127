// The file-system calls of the platform on Linux.
#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "FailureInjection.h"
#include "Files.h"

namespace ZoPlatform::Files {

namespace {

using FailureInjection::EOperation;

bool injected(EOperation operation) { return FailureInjection::ShouldFail(operation); }

std::uint64_t toMicroseconds(const struct statx_timestamp& t) {
  if (t.tv_sec < 0) return 0;
  return static_cast<std::uint64_t>(t.tv_sec) * 1000000u + t.tv_nsec / 1000u;
}

// Closes a descriptor when the scope ends.
class CDescriptor {
 public:
  explicit CDescriptor(int fd) : m_fd(fd) {}
  ~CDescriptor() {
    if (m_fd >= 0) ::close(m_fd);
  }
  CDescriptor(const CDescriptor&) = delete;
  CDescriptor& operator=(const CDescriptor&) = delete;
  int Get() const { return m_fd; }
  // Closes now, reporting whether the last writes reached the file.
  bool Close() {
    const int fd = m_fd;
    m_fd = -1;
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int m_fd;
};

bool writeAll(int fd, const char* data, std::size_t size) {
  if (injected(EOperation::eFileWrite)) {
    errno = ENOSPC;
    return false;
  }
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

bool copyBytes(int in, int out) {
  char buffer[1 << 16];
  for (;;) {
    const ssize_t n = ::read(in, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    if (n == 0) return true;
    if (!writeAll(out, buffer, static_cast<std::size_t>(n))) return false;
  }
}

bool isDirectory(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// statx relative to `directory`, or of the descriptor itself with an empty
// path and AT_EMPTY_PATH.
std::optional<SFileStatus> statusOf(int directory, const char* path, int flags) {
  struct statx st;
  if (::statx(directory, path, flags, STATX_BASIC_STATS | STATX_BTIME, &st) != 0) return std::nullopt;
  SFileStatus status;
  status.bDirectory = S_ISDIR(st.stx_mode);
  status.iSize = static_cast<std::int64_t>(st.stx_size);
  status.uiModificationTime = toMicroseconds(st.stx_mtime);
  if (st.stx_mask & STATX_BTIME) status.uiBirthTime = toMicroseconds(st.stx_btime);
  status.uiDevice = (static_cast<std::uint64_t>(st.stx_dev_major) << 32) | st.stx_dev_minor;
  status.uiInode = st.stx_ino;
  return status;
}

}  // namespace

std::optional<SFileStatus> GetStatus(const std::string& path) { return statusOf(AT_FDCWD, path.c_str(), 0); }

bool Exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

bool MakeDirectory(const std::string& path) { return ::mkdir(path.c_str(), 0777) == 0; }

bool RemoveFile(const std::string& path) { return ::unlink(path.c_str()) == 0; }

bool CopyFile(const std::string& from, const std::string& to, bool failIfExists) {
  CDescriptor in(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat source, target;
  if (in.Get() < 0 || ::fstat(in.Get(), &source) != 0 || S_ISDIR(source.st_mode)) return false;
  if (::stat(to.c_str(), &target) == 0) {
    if (failIfExists || S_ISDIR(target.st_mode)) return false;
    if (target.st_dev == source.st_dev && target.st_ino == source.st_ino) return false;
  }
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (failIfExists ? O_EXCL : O_TRUNC);
  CDescriptor out(::open(to.c_str(), flags, source.st_mode & 0777));
  if (out.Get() < 0) return false;
  const bool copied = copyBytes(in.Get(), out.Get());
  return out.Close() && copied;
}

bool RenameWithoutReplacing(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  // A file system without the flag: a hard link fails on an existing name
  // as well. A directory cannot be linked and is not renamed there.
  if (::link(from.c_str(), to.c_str()) != 0) return false;
  return ::unlink(from.c_str()) == 0;
}

bool ReadWholeFile(const std::string& path, std::string& bytes) {
  bytes.clear();
  if (injected(EOperation::eFileOpen)) return false;
  // Opening a FIFO for reading would wait for a writer: open without
  // waiting, and read regular files only.
  CDescriptor in(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat st;
  if (in.Get() < 0 || ::fstat(in.Get(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
  bytes.reserve(static_cast<std::size_t>(st.st_size));
  char buffer[1 << 16];
  for (;;) {
    const ssize_t n = ::read(in.Get(), buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      bytes.clear();
      return false;
    }
    if (n == 0) return true;
    bytes.append(buffer, static_cast<std::size_t>(n));
  }
}

int OpenForReading(const std::string& path) {
  if (injected(EOperation::eFileOpen)) return -1;
  // Non-blocking, so that a FIFO without a writer is refused rather than waited for.
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return -1;
  struct stat st;
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode) || ::fcntl(fd, F_SETFL, 0) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

std::int64_t ReadSome(int descriptor, void* data, std::size_t size) {
  for (;;) {
    const ssize_t n = ::read(descriptor, data, size);
    if (n < 0 && errno == EINTR) continue;
    return n;
  }
}

std::optional<SFileStatus> GetOpenFileStatus(int descriptor) { return statusOf(descriptor, "", AT_EMPTY_PATH); }

void CloseDescriptor(int descriptor) {
  if (descriptor >= 0) ::close(descriptor);
}

int OpenForWriting(const std::string& path) {
  if (injected(EOperation::eFileOpen)) return -1;
  return ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}

bool WriteAll(int descriptor, const void* data, std::size_t size) {
  return writeAll(descriptor, static_cast<const char*>(data), size);
}

bool CloseWritten(int descriptor) {
  if (descriptor < 0) return false;
  const bool closed = ::close(descriptor) == 0;
  return closed && !injected(EOperation::eFileWrite);
}

bool ListDirectory(const std::string& path, std::vector<SDirectoryEntry>& entries) {
  entries.clear();
  if (injected(EOperation::eDirectoryListing)) return false;
  const std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(path.c_str()), ::closedir);
  if (!dir) return false;
  const std::string prefix = path.empty() || path.back() == '/' ? path : path + '/';
  while (const dirent* entry = ::readdir(dir.get())) {
    const std::string name = entry->d_name;
    if (name == "." || name == "..") continue;
    bool directory = entry->d_type == DT_DIR;
    if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) directory = isDirectory(prefix + name);
    entries.push_back({name, directory});
  }
  return true;
}

std::string GetWorkingDirectory() {
  const std::unique_ptr<char, void (*)(void*)> cwd(::getcwd(nullptr, 0), std::free);
  return cwd ? std::string(cwd.get()) : std::string();
}

bool SetWorkingDirectory(const std::string& path) { return ::chdir(path.c_str()) == 0; }

std::string GetExecutablePath() {
  std::string buffer(256, '\0');
  for (;;) {
    const ssize_t n = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (n < 0) return std::string();
    if (static_cast<std::size_t>(n) < buffer.size()) return buffer.substr(0, static_cast<std::size_t>(n));
    buffer.resize(buffer.size() * 2);
  }
}

std::optional<std::string> GetEnvironmentVariable(const char* name) {
  const char* value = std::getenv(name);
  if (!value) return std::nullopt;
  return std::string(value);
}

std::string GetHomeDirectory() {
  if (const char* home = std::getenv("HOME"); home && *home) return home;
  struct passwd record, *found = nullptr;
  char buffer[4096];
  if (::getpwuid_r(::getuid(), &record, buffer, sizeof buffer, &found) == 0 && found && found->pw_dir)
    return found->pw_dir;
  return std::string();
}

}  // namespace ZoPlatform::Files
