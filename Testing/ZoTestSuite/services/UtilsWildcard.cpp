// Wildcards of Utils as regular expressions, made by textual replacement.
#include "services/Utils.h"

namespace TestSuite::Utils {

std::wregex GenerateWildcardRegex(const CString& wildcard, bool caseSensitive) {
  CString pattern = wildcard;
  // The backslash first, so that the escapes added below stay whole; '?'
  // and '*' last, so that the dots they bring stay unescaped.
  pattern.Replace(L"\\", L"\\\\");
  for (const wchar_t* special : {L"^", L".", L"$", L"|", L"(", L")", L"[", L"]", L"+", L"/"})
    pattern.Replace(special, (CString(L"\\") + special).GetString());
  pattern.Replace(L"?", L".");
  pattern.Replace(L"*", L".*");
  auto flags = std::regex_constants::ECMAScript;
  if (!caseSensitive) flags |= std::regex_constants::icase;
  return std::wregex(pattern.Str(), flags);
}

}  // namespace TestSuite::Utils
