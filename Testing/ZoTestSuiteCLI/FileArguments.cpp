// The front end's checks of the files named on its command line.
#include "FileArguments.h"

#include <filesystem>

#include "foundation/SystemPath.h"
#include "foundation/ZoFileSystem.h"
#include "services/COut.h"

namespace TestSuite::CLI {

namespace {

// Whether `output` names the same file as `input`.
bool isSameFile(const CString& output, const CString& input) {
  std::error_code error;
  const auto a = std::filesystem::weakly_canonical(std::filesystem::path(PathToSystem(output)), error);
  const auto b = std::filesystem::weakly_canonical(std::filesystem::path(PathToSystem(input)), error);
  return !error && a == b;
}

}  // namespace

bool CheckInputExists(const CString& path) {
  if (ZoFileSystem::Exists(path)) return true;
  COut::Write(L"Fehler: Datei %s existiert nicht.\n", path).Color(ZoColorRGBA::c_RED);
  return false;
}

bool CheckWritablePath(const CString& output) {
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

bool CheckOutputSparesInputs(const CString& output, const XbArray<CString>& inputs, const wchar_t* what) {
  for (const CString& input : inputs) {
    if (!isSameFile(output, input)) continue;
    COut::Write(L"Fehler: %s %s würde eine Eingabe überschreiben.\n", what, output).Color(ZoColorRGBA::c_RED);
    return false;
  }
  return true;
}

}  // namespace TestSuite::CLI
