// The archive's file-system errors.
#include "report/FileSystemError.h"

#include <filesystem>
#include <system_error>

namespace TestSuite::Report {

namespace {

// The operation that failed cannot say why: all the archive knows is that
// the path would not do.
std::error_code invalidArgument() { return std::make_error_code(std::errc::invalid_argument); }

}  // namespace

void ThrowFileSystemError(const char* text, const CString& path) {
  throw std::filesystem::filesystem_error(text, std::filesystem::path(path.ToUtf8()), invalidArgument());
}

void ThrowFileSystemError(const char* text, const CString& path1, const CString& path2) {
  throw std::filesystem::filesystem_error(text, std::filesystem::path(path1.ToUtf8()),
                                          std::filesystem::path(path2.ToUtf8()), invalidArgument());
}

}  // namespace TestSuite::Report
