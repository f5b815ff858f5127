// CollectFilterStages: selection file and pattern filters over the scanned
// list of test classes.
//
// Both work on a CTree over the list. The selection gives a table through
// the class-and-case slot alone; the filters give one through all five
// slots, each on ApplyMultiplePatternFilters, the class-and-case slot on
// "class:case". The two are combined case by case (a selection's exclude is
// final, a filter's include or exclude replaces anything else, a neutral
// filter leaves the selection's word) and every case that ends up neutral
// is dropped. So with filters alone only what a filter positively included
// survives, and a selection file that cannot be read, with no filters,
// leaves nothing.
#include "discovery/CollectFilterStages.h"

#include <optional>
#include <string>
#include <unordered_map>

#include "discovery/SelectionStore.h"

namespace TestSuite {
namespace {

std::optional<XbArray<EFilterResult>> selectionTable(const XbArray<SUnitTest>& unitTests, const CTree& tree,
                                                     const SCollectOptions& options) {
  std::unique_ptr<CSelectionStore::SData> data = CSelectionStore::Read(options.sSelectionFile);
  if (!data) return std::nullopt;
  const CSelectionStore store(std::move(data));
  const bool bInverted = options.eSelectionMode != 0;
  SFilterFunctions functions;
  functions.classCaseFilter = [&store, bInverted](const CString& className, const CString& caseName) {
    return store.IsSelected(className, caseName) != bInverted ? FilterInclude : FilterExclude;
  };
  return ComputeFilterTable(unitTests, tree, functions);
}

// The answers of the pattern list for names met before. Case names repeat
// from class to class; the memo is bounded, so that a tree of distinct names
// costs no more than the patterns themselves.
class CPatternMemo {
 public:
  explicit CPatternMemo(const SCollectOptions& options) : m_options(options) {}

  EFilterResult operator()(const CString& text) {
    if (const auto it = m_results.find(text.Str()); it != m_results.end()) return it->second;
    const EFilterResult eResult = ApplyMultiplePatternFilters(text, m_options.filters, m_options.bFullMatch);
    if (m_results.size() < sc_uiMaxEntries) m_results.emplace(text.Str(), eResult);
    return eResult;
  }

 private:
  static constexpr std::size_t sc_uiMaxEntries = 1 << 16;
  const SCollectOptions& m_options;
  std::unordered_map<std::wstring, EFilterResult> m_results;
};

XbArray<EFilterResult> patternTable(const XbArray<SUnitTest>& unitTests, const CTree& tree,
                                    const SCollectOptions& options) {
  CPatternMemo memo(options);
  const auto apply = [&memo](const CString& text) { return memo(text); };
  SFilterFunctions functions;
  functions.nodeFilter = apply;
  functions.classFilter = apply;
  functions.caseFilter = apply;
  // "class:case" is met once per case: asked without the memo.
  functions.classCaseFilter = [&options](const CString& className, const CString& caseName) {
    return ApplyMultiplePatternFilters(className + L":" + caseName, options.filters, options.bFullMatch);
  };
  functions.contactFilter = apply;
  return ComputeFilterTable(unitTests, tree, functions);
}

// Neutral to start; a selection's exclude is final; a filter's include or
// exclude replaces the rest.
XbArray<EFilterResult> combine(unsigned int uiCaseCount, const std::optional<XbArray<EFilterResult>>& selection,
                               const std::optional<XbArray<EFilterResult>>& filter) {
  XbArray<EFilterResult> combined;
  combined.Std().assign(uiCaseCount, FilterNeutral);
  for (unsigned int i = 0; i < uiCaseCount; ++i) {
    if (selection) {
      combined[i] = (*selection)[i];
      if (combined[i] == FilterExclude) continue;
    }
    if (filter && (*filter)[i] != FilterNeutral) combined[i] = (*filter)[i];
  }
  return combined;
}

}  // namespace

void applySelectionAndFilters(XbArray<SUnitTest>& unitTests, const SCollectOptions& options) {
  if (options.sSelectionFile.IsEmpty() && options.filters.IsEmpty()) return;
  CTree tree;
  tree.Build(unitTests);
  const std::optional<XbArray<EFilterResult>> selection = selectionTable(unitTests, tree, options);
  std::optional<XbArray<EFilterResult>> filter;
  if (!options.filters.IsEmpty()) filter = patternTable(unitTests, tree, options);
  PurgeTestCases(unitTests, tree, combine(tree.GetCaseCount(), selection, filter), false);
}

}  // namespace TestSuite
