// ZoFileSystem: the file-system operations of the foundation layer, by
// path text. None throws; failures are false, -1 or an empty text.
#pragma once

#include <cstdint>

#include "CString.h"
#include "XbArray.h"

class ZoFileSystem {
 public:
  // Special directories; each path GetDirectory gives ends in '/'.
  enum ESpecialDirectory : int {
    eTemporary = 0,         // $TMPDIR, else /tmp/
    eDocuments = 5,         // root of the default report directory
    eLocalAppData = 6,      // per-user application data
    eDebugOutputRoot = 16,  // temporary directory + "ZoTestSuiteDebug/"
    eExecutable = 18,       // directory of the running executable
  };

  struct SEntry {
    CString sName;  // without directory
    bool bDirectory = false;
  };

  // What names a file on this machine whatever path reaches it (links
  // followed): device and inode.
  struct SFileIdentity {
    std::uint64_t uiDevice = 0;
    std::uint64_t uiInode = 0;
    bool operator==(const SFileIdentity&) const = default;
  };

  static bool Exists(const CString& path);  // file or directory
  // False if the path names nothing reachable.
  static bool GetFileIdentity(const CString& path, SFileIdentity& identity);
  static bool IsDirectory(const CString& path);
  // One level; true if it was made. An existing directory gives false.
  static bool CreateDirectoryW(const CString& path);
  static bool DeleteFileW(const CString& path);
  static bool DeleteFile(const CString& path) { return DeleteFileW(path); }
  static bool CopyFileW(const CString& from, const CString& to, bool failIfExists);
  // Renames a file; fails, and leaves both alone, if `to` exists.
  static bool MoveFileW(const CString& from, const CString& to);
  // Size in bytes, -1 if the file cannot be examined.
  static std::int64_t GetFileSize(const CString& path);
  // Creation time where the file system keeps it, else modification time;
  // microseconds since the epoch, 0 if unknown.
  static std::uint64_t GetCreationTime(const CString& path);
  // Entries of a directory in the order the system gives them, without
  // "." and ".."; empty if it cannot be read.
  static XbArray<SEntry> ListDirectory(const CString& path);
  static bool ReadFile(const CString& path, std::string& bytes);

  static CString GetDirectory(int specialDirectory);
  // "dir/name.ext" -> "dir/", "name", ".ext".
  static void SplitPath(const CString& path, CString& directory, CString& name, CString& extension);
  // Replaces %EXECUTABLE% with the executable's directory (ending in '/').
  static CString InterpretEnvironment(const CString& text);

  static CString GetCurrentDirectoryW();
  static bool SetCurrentDirectoryW(const CString& path);
};
