// The process runner of Utils: one command line, a working directory and a
// limit in seconds; the outcome is a warning text or nothing.
#include <string>
#include <vector>

#include "foundation/SystemPath.h"
#include "foundation/platform/Process.h"
#include "services/Utils.h"

namespace TestSuite::Utils {

namespace {

// Words of a command line: blanks (space, tab) outside double quotes
// separate, the quotes themselves are dropped, nothing else is
// interpreted. A pair of quotes with nothing between them is an empty word.
std::vector<std::string> splitCommandLine(const CString& commandLine) {
  std::vector<std::string> words;
  std::wstring word;
  bool inWord = false, quoted = false;
  for (const wchar_t ch : commandLine.Str()) {
    if (ch == L'"') {
      quoted = !quoted;
      inWord = true;
    } else if (!quoted && (ch == L' ' || ch == L'\t')) {
      if (inWord) words.push_back(CString(word).ToUtf8());
      word.clear();
      inWord = false;
    } else {
      word += ch;
      inWord = true;
    }
  }
  if (inWord) words.push_back(CString(word).ToUtf8());
  return words;
}

CString startFailure(const CString& executable, const CString& arguments, const CString& workingDirectory) {
  CString text;
  text.Format(L"Warnung: Prozess %s konnte nicht gestartet werden:\n", executable);
  text.AppendFormat(L"         Argumente: %s\n", arguments);
  text.AppendFormat(L"         Working Directory: %s\n", workingDirectory);
  return text;
}

}  // namespace

CString RunProcess(const CString& executable, const CString& arguments, const CString& workingDirectory,
                   std::uint32_t timeoutSeconds) {
  ZoPlatform::Process::SSpawnRequest request;
  request.arguments = splitCommandLine(executable + L" " + arguments);
  request.sWorkingDirectory = PathToSystem(workingDirectory);
  ZoPlatform::Process::CChild child;
  if (!child.Start(request)) return startFailure(executable, arguments, workingDirectory);
  // The limit in milliseconds is a 32-bit product, as it always was.
  const std::uint32_t milliseconds = timeoutSeconds * 1000u;
  if (child.WaitFor(milliseconds)) return CString();
  child.Kill();
  return FormatString(L"Warnung: Prozess %s nach %d Sekunden abgebrochen.\n", GetPathLeaf(executable), timeoutSeconds);
}

}  // namespace TestSuite::Utils
