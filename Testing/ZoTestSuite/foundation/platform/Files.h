// Files: the operating system's file-system calls, by UTF-8 path, for the
// foundation layer's file classes. Nothing here throws: a failure is false,
// an empty result or std::nullopt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ZoPlatform::Files {

struct SFileStatus {
  bool bDirectory = false;
  std::int64_t iSize = 0;
  // Microseconds since the epoch; 0 where the file system keeps no birth time.
  std::uint64_t uiBirthTime = 0;
  std::uint64_t uiModificationTime = 0;
  // Together they name the file on this machine, whatever path reached it.
  std::uint64_t uiDevice = 0;
  std::uint64_t uiInode = 0;

  // The birth time where the file system keeps it, else the modification time.
  std::uint64_t GetCreationTime() const { return uiBirthTime ? uiBirthTime : uiModificationTime; }
};

struct SDirectoryEntry {
  std::string sName;
  bool bDirectory = false;
};

// Follows symbolic links; nullopt if the path names nothing reachable.
std::optional<SFileStatus> GetStatus(const std::string& path);
bool Exists(const std::string& path);
// One level, with the permissions the process's umask leaves.
bool MakeDirectory(const std::string& path);
// Removes a file (never a directory).
bool RemoveFile(const std::string& path);
// Copies the bytes. With `failIfExists` an existing target is left alone
// and the copy fails; otherwise it is replaced. Copying a file onto
// itself fails.
bool CopyFile(const std::string& from, const std::string& to, bool failIfExists);
// Gives a file or directory a new name; fails if something is there under
// the new name already, which is then left as it is.
bool RenameWithoutReplacing(const std::string& from, const std::string& to);
bool ReadWholeFile(const std::string& path, std::string& bytes);

// A regular file opened for reading by descriptor; -1 if it cannot be
// opened or is no regular file. Opening a FIFO or a device never blocks.
int OpenForReading(const std::string& path);
// Up to `size` bytes from the current position, retried after an
// interruption: the count read, 0 at the end, -1 on failure.
std::int64_t ReadSome(int descriptor, void* data, std::size_t size);
std::optional<SFileStatus> GetOpenFileStatus(int descriptor);
void CloseDescriptor(int descriptor);
// A file created or emptied for writing, by descriptor; -1 if it cannot be
// opened.
int OpenForWriting(const std::string& path);
// All `size` bytes, retried after an interruption; false if not all could
// be written (a full disk).
bool WriteAll(int descriptor, const void* data, std::size_t size);
// Closes, and tells whether the file's last writes reached it.
bool CloseWritten(int descriptor);
// Entries without "." and ".."; a symbolic link counts as what it points to.
bool ListDirectory(const std::string& path, std::vector<SDirectoryEntry>& entries);

std::string GetWorkingDirectory();
bool SetWorkingDirectory(const std::string& path);
// Absolute path of the running program; empty if it cannot be read.
std::string GetExecutablePath();
// The value of an environment variable; nullopt when it is unset.
std::optional<std::string> GetEnvironmentVariable(const char* name);
// $HOME, else the home directory of the process's user; empty if neither.
std::string GetHomeDirectory();

}  // namespace ZoPlatform::Files
