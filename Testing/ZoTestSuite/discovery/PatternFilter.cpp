// Pattern filters: what one expression, or a list of them, says of a text.
#include "ZoTestSuiteTree.h"

namespace TestSuite {

EFilterResult ApplyPatternFilter(const CString& text, const SPatternFilter& filter, bool bFullMatch) {
  // A default-constructed expression has no automaton and matches nothing.
  const bool bMatch = filter.wildcard ? filter.wildcard->Match(text.Str(), bFullMatch)
                      : bFullMatch    ? std::regex_match(text.Str(), filter.regex)
                                      : std::regex_search(text.Str(), filter.regex);
  if (!bMatch) return FilterNeutral;
  return filter.eAction != 0 ? FilterExclude : FilterInclude;
}

EFilterResult ApplyMultiplePatternFilters(const CString& text, const XbArray<SPatternFilter>& filters,
                                          bool bFullMatch) {
  EFilterResult eResult = FilterNeutral;
  for (const SPatternFilter& filter : filters) {
    const EFilterResult eFilter = ApplyPatternFilter(text, filter, bFullMatch);
    if (eFilter != FilterNeutral) eResult = eFilter;
  }
  return eResult;
}

}  // namespace TestSuite
