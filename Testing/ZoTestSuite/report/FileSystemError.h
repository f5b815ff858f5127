// FileSystemError: the standard file-system error that the archive throws
// when a directory cannot be made or a report cannot be renamed; the caller
// catches it, the archive never does.
#pragma once

#include "foundation/CString.h"

namespace TestSuite::Report {

// Throws std::filesystem::filesystem_error with `text` as its message,
// `path` as its path and the error code of an invalid argument.
[[noreturn]] void ThrowFileSystemError(const char* text, const CString& path);
// The same with the two paths of an operation on two files.
[[noreturn]] void ThrowFileSystemError(const char* text, const CString& path1, const CString& path2);

}  // namespace TestSuite::Report
