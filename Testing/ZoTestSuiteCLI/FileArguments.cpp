// FileArguments: checks of output files named on the command line.
#include "FileArguments.h"

#include <filesystem>

#include "foundation/ZoFileSystem.h"
#include "services/COut.h"

namespace TestSuite::CLI {
namespace {

bool isSameFile(const CString& output, const CString& input) {
  std::error_code error;
  const auto a = std::filesystem::weakly_canonical(std::filesystem::path(output.ToUtf8()), error);
  const auto b = std::filesystem::weakly_canonical(std::filesystem::path(input.ToUtf8()), error);
  return !error && a == b;
}

}  // namespace

bool IsWritablePath(const CString& output) {
  if (ZoFileSystem::IsDirectory(output)) {
    COut::Write(L"Fehler: %s ist ein Verzeichnis, keine Datei.\n", output).Color(ZoColorRGBA::c_RED);
    return false;
  }
  CString directory, name, extension;
  ZoFileSystem::SplitPath(output, directory, name, extension);
  if (directory.IsEmpty() || ZoFileSystem::IsDirectory(directory)) return true;
  COut::Write(L"Fehler: Verzeichnis %s existiert nicht.\n", directory).Color(ZoColorRGBA::c_RED);
  return false;
}

bool OutputSparesInputs(const CString& output, const XbArray<CString>& inputs, const wchar_t* sWhat) {
  for (const CString& input : inputs) {
    if (!isSameFile(output, input)) continue;
    COut::Write(L"Fehler: %s %s würde eine Eingabe überschreiben.\n", sWhat, output).Color(ZoColorRGBA::c_RED);
    return false;
  }
  return true;
}

}  // namespace TestSuite::CLI
