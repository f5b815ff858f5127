// Shared memory on Linux: POSIX shared memory objects ("/" + name, under
// /dev/shm), sized with ftruncate and mapped with mmap.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "AbnormalEnd.h"
#include "FailureInjection.h"
#include "SharedMemory.h"

namespace ZoPlatform::SharedMemory {

namespace {

constexpr std::size_t sc_uiMaxNameBytes = 240;
constexpr const char* sc_szObjectDirectory = "/dev/shm";

bool isValidName(const std::string& name) {
  return !name.empty() && name.size() <= sc_uiMaxNameBytes && name.find('/') == std::string::npos;
}

std::string systemName(const std::string& name) { return "/" + name; }

// Where the object appears in the file system, for a removal from a signal
// handler.
std::string filePath(const std::string& name) { return std::string(sc_szObjectDirectory) + "/" + name; }

bool injectedFailure() { return FailureInjection::ShouldFail(FailureInjection::EOperation::eSharedMemoryMap); }

bool fail(int code, int* error) {
  if (error) *error = code;
  return false;
}

}  // namespace

bool Create(const std::string& name, std::size_t size, int* error) {
  if (!isValidName(name)) return fail(EINVAL, error);
  if (injectedFailure()) return fail(ENOMEM, error);
  const int fd = ::shm_open(systemName(name).c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
  if (fd < 0) return fail(errno, error);
  int rc;
  do { rc = ::ftruncate(fd, static_cast<off_t>(size)); } while (rc != 0 && errno == EINTR);
  const int code = rc == 0 ? 0 : errno;
  ::close(fd);
  if (code == 0) {
    AbnormalEnd::AddFile(filePath(name));
    return true;
  }
  ::shm_unlink(systemName(name).c_str());
  return fail(code, error);
}

bool Remove(const std::string& name) {
  if (!isValidName(name)) return false;
  AbnormalEnd::RemoveFile(filePath(name));
  return ::shm_unlink(systemName(name).c_str()) == 0;
}

bool Exists(const std::string& name) {
  if (!isValidName(name)) return false;
  const int fd = ::shm_open(systemName(name).c_str(), O_RDONLY, 0);
  if (fd < 0) return errno == EACCES;
  ::close(fd);
  return true;
}

std::vector<std::string> ListNames(const std::string& prefix) {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator it(sc_szObjectDirectory, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (name.compare(0, prefix.size(), prefix) == 0 && name.compare(0, 4, "sem.") != 0) names.push_back(name);
  }
  return names;
}

CView::~CView() { Close(); }

CView::CView(CView&& other) noexcept
    : m_pData(std::exchange(other.m_pData, nullptr)),
      m_uiSize(std::exchange(other.m_uiSize, 0)),
      m_iFd(std::exchange(other.m_iFd, -1)) {}

CView& CView::operator=(CView&& other) noexcept {
  if (this != &other) {
    Close();
    m_pData = std::exchange(other.m_pData, nullptr);
    m_uiSize = std::exchange(other.m_uiSize, 0);
    m_iFd = std::exchange(other.m_iFd, -1);
  }
  return *this;
}

bool CView::Open(const std::string& name, std::size_t size, EAccess access, int* error) {
  Close();
  if (!isValidName(name) || size == 0) return fail(EINVAL, error);
  if (injectedFailure()) return fail(ENOMEM, error);
  const bool write = access == EAccess::eReadWrite;
  const int fd = ::shm_open(systemName(name).c_str(), write ? O_RDWR : O_RDONLY, 0);
  if (fd < 0) return fail(errno, error);
  struct stat status {};
  if (::fstat(fd, &status) != 0 || static_cast<std::size_t>(status.st_size) < size) {
    const int code = errno != 0 ? errno : EINVAL;
    ::close(fd);
    return fail(code, error);
  }
  void* data = ::mmap(nullptr, size, write ? PROT_READ | PROT_WRITE : PROT_READ, MAP_SHARED, fd, 0);
  if (data == MAP_FAILED) {
    const int code = errno;
    ::close(fd);
    return fail(code, error);
  }
  m_pData = data;
  m_uiSize = size;
  m_iFd = fd;
  return true;
}

void CView::Close() {
  if (m_pData) ::munmap(m_pData, m_uiSize);
  if (m_iFd >= 0) ::close(m_iFd);
  m_pData = nullptr;
  m_uiSize = 0;
  m_iFd = -1;
}

}  // namespace ZoPlatform::SharedMemory
