// CWildcard: compiling a wildcard into items and matching them by a state
// set that walks the text once, without recursion.
#include "services/Wildcard.h"

#include <algorithm>
#include <cwctype>
#include <regex>

namespace TestSuite::Utils {

namespace {

bool isLineEnd(wchar_t ch) { return ch == L'\n' || ch == L'\r' || ch == 0x2028 || ch == 0x2029; }

wchar_t lower(wchar_t ch) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(ch))); }

// Reads the digits at `i`; false if there are none. Values beyond the item
// limit are clipped to it: they could never be expanded anyway.
bool readCount(const std::wstring& pattern, std::size_t& i, std::size_t& uiValue) {
  const std::size_t uiStart = i;
  uiValue = 0;
  for (; i < pattern.size() && pattern[i] >= L'0' && pattern[i] <= L'9'; ++i)
    uiValue =
        std::min<std::size_t>(uiValue * 10 + static_cast<std::size_t>(pattern[i] - L'0'), CWildcard::c_uiMaxItems + 1);
  return i > uiStart;
}

}  // namespace

CWildcard::CWildcard(const CString& wildcard, bool bCaseSensitive) : m_bCaseSensitive(bCaseSensitive) {
  parse(wildcard.Str());
  m_bCompiled = true;
}

// Splits the pattern into items with their ranges; a repetition is merged
// into the range of the item before it.
void CWildcard::parse(const std::wstring& pattern) {
  std::vector<SRange> ranges;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const wchar_t ch = pattern[i];
    if (ch == L'*') {
      ranges.push_back({{EClass::AnyButLineEnd}, 0, c_uiUnbounded});
    } else if (ch == L'?') {
      ranges.push_back({{EClass::AnyButLineEnd}, 1, 1});
    } else if (ch != L'{') {
      ranges.push_back({{EClass::Literal, false, false, m_bCaseSensitive ? ch : lower(ch)}, 1, 1});
    } else {
      std::size_t uiMin = 0, uiMax = 0;
      ++i;
      if (!readCount(pattern, i, uiMin)) throw std::regex_error(std::regex_constants::error_badbrace);
      uiMax = uiMin;
      if (i < pattern.size() && pattern[i] == L',') {
        ++i;
        if (!readCount(pattern, i, uiMax)) uiMax = c_uiUnbounded;
      }
      if (i >= pattern.size()) throw std::regex_error(std::regex_constants::error_brace);
      if (pattern[i] != L'}' || uiMax < uiMin) throw std::regex_error(std::regex_constants::error_badbrace);
      if (ranges.empty()) throw std::regex_error(std::regex_constants::error_badrepeat);
      SRange& last = ranges.back();
      // The counts of a repeated repetition form one range only if the
      // ranges of consecutive counts touch.
      const std::size_t p = last.uiMin, q = last.uiMax;
      const bool bTouching = uiMin == uiMax || (q == c_uiUnbounded ? (uiMin >= 1 || p <= 1) : uiMin * (q - p) + 1 >= p);
      if (!bTouching) throw std::regex_error(std::regex_constants::error_badrepeat);
      auto times = [](std::size_t a, std::size_t b) -> std::size_t {
        if (a == 0 || b == 0) return 0;
        if (a == c_uiUnbounded || b == c_uiUnbounded) return c_uiUnbounded;
        return a > (c_uiMaxItems + 1) / b ? c_uiMaxItems + 1 : a * b;
      };
      last.uiMin = times(p, uiMin);
      last.uiMax = times(q, uiMax);
    }
  }
  expand(ranges);
}

// Each range becomes its minimum of single items, then one repeated item
// or the optional ones up to its maximum.
void CWildcard::expand(const std::vector<SRange>& ranges) {
  for (const SRange& range : ranges) {
    const std::size_t uiOptional = range.uiMax == c_uiUnbounded ? 1 : range.uiMax - range.uiMin;
    if (range.uiMin > c_uiMaxItems || uiOptional > c_uiMaxItems - range.uiMin ||
        m_items.size() > c_uiMaxItems - range.uiMin - uiOptional)
      throw std::regex_error(std::regex_constants::error_complexity);
    m_items.insert(m_items.end(), range.uiMin, range.item);
    if (range.uiMax == c_uiUnbounded) {
      SItem repeated = range.item;
      repeated.bRepeated = true;
      // "**" is one "*": a second equal repetition adds no state.
      const bool bSame = !m_items.empty() && m_items.back().bRepeated && m_items.back().eClass == repeated.eClass &&
                         m_items.back().ch == repeated.ch;
      if (!bSame) m_items.push_back(repeated);
    } else {
      SItem optional = range.item;
      optional.bOptional = true;
      m_items.insert(m_items.end(), uiOptional, optional);
    }
  }
}

bool CWildcard::itemMatches(const SItem& item, wchar_t ch) const {
  switch (item.eClass) {
    case EClass::Literal: return item.ch == (m_bCaseSensitive ? ch : lower(ch));
    case EClass::AnyButLineEnd: return !isLineEnd(ch);
  }
  return false;
}

// Adds the state and every state reachable from it without reading a
// character (behind items that may be skipped).
void CWildcard::addClosure(std::size_t uiState, std::vector<std::size_t>& states, std::vector<std::size_t>& stamps,
                           std::size_t uiStamp) const {
  for (;;) {
    if (stamps[uiState] == uiStamp) return;
    stamps[uiState] = uiStamp;
    states.push_back(uiState);
    if (uiState >= m_items.size() || !(m_items[uiState].bRepeated || m_items[uiState].bOptional)) return;
    ++uiState;
  }
}

bool CWildcard::Match(std::wstring_view text, bool bFullMatch) const {
  if (!m_bCompiled) return false;
  const std::size_t uiAccept = m_items.size();
  std::vector<std::size_t> current, next, stamps(uiAccept + 1, 0);
  std::size_t uiStamp = 1;
  addClosure(0, current, stamps, uiStamp);
  if (!bFullMatch && stamps[uiAccept] == uiStamp) return true;
  for (const wchar_t ch : text) {
    ++uiStamp;
    next.clear();
    for (const std::size_t uiState : current) {
      if (uiState == uiAccept || !itemMatches(m_items[uiState], ch)) continue;
      addClosure(m_items[uiState].bRepeated ? uiState : uiState + 1, next, stamps, uiStamp);
    }
    // A search may begin a match at every character.
    if (!bFullMatch) addClosure(0, next, stamps, uiStamp);
    current.swap(next);
    if (!bFullMatch && stamps[uiAccept] == uiStamp) return true;
    if (current.empty()) return false;
  }
  return stamps[uiAccept] == uiStamp;
}

}  // namespace TestSuite::Utils
