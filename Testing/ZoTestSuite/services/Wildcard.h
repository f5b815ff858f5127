// CWildcard: a wildcard pattern compiled for iterative matching, with the
// meaning it has as the expression of Utils::GenerateWildcardRegex but
// without a regular-expression engine, so that neither a long pattern nor
// a long text can exhaust the stack.
//
// '*' is any text and '?' one character, neither of them crossing a line
// end (line feed, carriage return, U+2028, U+2029), as the expression's "."
// does not. "{n}", "{n,}" and "{n,m}" repeat the item before them; every
// other character stands for itself. A brace that opens no valid repetition,
// a repetition with nothing before it, a repetition of a repetition whose
// counts cannot be merged into one range (such as "a{2}{1,2}") and a
// pattern that would expand beyond c_uiMaxItems items are errors:
// std::regex_error, as the expression compiler raises.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "foundation/CString.h"

namespace TestSuite::Utils {

class CWildcard {
 public:
  static constexpr std::size_t c_uiMaxItems = 1u << 20;

  CWildcard() = default;  // matches nothing
  CWildcard(const CString& wildcard, bool bCaseSensitive);

  // With `bFullMatch` the whole text must match, as std::regex_match would;
  // otherwise a match anywhere inside it counts, as std::regex_search.
  bool Match(std::wstring_view text, bool bFullMatch) const;

 private:
  enum class EClass : unsigned char { Literal, AnyButLineEnd };
  // One item of the pattern: one character of its class, or, repeated,
  // any number of them.
  struct SItem {
    EClass eClass = EClass::Literal;
    bool bRepeated = false;
    bool bOptional = false;
    wchar_t ch = 0;
  };
  // An item with its repetition range as the pattern wrote it.
  struct SRange {
    SItem item;
    std::size_t uiMin = 1;
    std::size_t uiMax = 1;  // c_uiUnbounded for no upper limit
  };
  static constexpr std::size_t c_uiUnbounded = ~std::size_t{0};

  void parse(const std::wstring& pattern);
  void expand(const std::vector<SRange>& ranges);
  bool itemMatches(const SItem& item, wchar_t ch) const;
  void addClosure(std::size_t uiState, std::vector<std::size_t>& states, std::vector<std::size_t>& stamps,
                  std::size_t uiStamp) const;

  std::vector<SItem> m_items;
  bool m_bCaseSensitive = true;
  bool m_bCompiled = false;
};

}  // namespace TestSuite::Utils
