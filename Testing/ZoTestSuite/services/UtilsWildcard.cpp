// Wildcards of Utils as regular expressions, made by textual replacement.
#include <algorithm>

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

namespace {

// The deepest nesting of groups; escaped parentheses and those inside a
// character class do not count.
std::size_t nestingDepth(const std::wstring& expression) {
  std::size_t uiDepth = 0, uiDeepest = 0;
  bool bInClass = false;
  for (std::size_t i = 0; i < expression.size(); ++i) {
    const wchar_t ch = expression[i];
    if (ch == L'\\') ++i;
    else if (bInClass) bInClass = ch != L']';
    else if (ch == L'[') bInClass = true;
    else if (ch == L'(') uiDeepest = std::max(uiDeepest, ++uiDepth);
    else if (ch == L')' && uiDepth > 0) --uiDepth;
  }
  return uiDeepest;
}

}  // namespace

std::wregex CompileBoundedRegex(const CString& expression, bool caseSensitive) {
  if (expression.Str().size() > c_uiMaxRegexLength || nestingDepth(expression.Str()) > c_uiMaxRegexNesting)
    throw std::regex_error(std::regex_constants::error_complexity);
  auto flags = std::regex_constants::ECMAScript | std::regex_constants::__polynomial;
  if (!caseSensitive) flags |= std::regex_constants::icase;
  return std::wregex(expression.Str(), flags);
}

}  // namespace TestSuite::Utils
