// The row tables of a report diff and the judgement of their rows.
#include "report/ReportDiff.h"

#include <algorithm>
#include <unordered_map>

namespace TestSuite::Report {

namespace {

// The order of CString, by UTF-16 code units. Keys of a report share long
// prefixes, and this compare runs some twenty times per row: the common
// prefix is skipped inline, and only the first differing characters go to
// the full comparison.
bool keyLess(const std::wstring& a, const std::wstring& b) {
  const std::size_t n = std::min(a.size(), b.size());
  const auto [atA, atB] = std::mismatch(a.data(), a.data() + n, b.data());
  if (atA == a.data() + n) return a.size() < b.size();
  return CString::CompareUtf16(std::wstring_view(atA, 1), std::wstring_view(atB, 1)) < 0;
}

// Walks the rows of A, then of B, by index; a new key appends a row, a
// known key fills this side's slot only while it is empty, so that the
// first of equal keys wins. Sorted by key at the end.
template <typename Row, typename Item, typename KeyOf, typename KeyField>
std::vector<Row> buildRows(const XbArray<Item>& a, const XbArray<Item>& b, KeyOf keyOf, KeyField keyField) {
  std::vector<Row> rows;
  std::unordered_map<CString, std::size_t> indexOfKey;
  indexOfKey.reserve(a.GetCount() + b.GetCount());
  const auto walk = [&](const XbArray<Item>& items, unsigned int Row::*slot) {
    for (unsigned int i = 0; i < items.GetCount(); ++i) {
      CString key = keyOf(items[i]);
      const auto [found, isNew] = indexOfKey.try_emplace(key, rows.size());
      if (isNew) {
        Row& row = rows.emplace_back();
        row.*keyField = std::move(key);
        row.*slot = i;
      } else if (rows[found->second].*slot == c_DiffMissing) {
        rows[found->second].*slot = i;
      }
    }
  };
  walk(a, &Row::IndexA);
  walk(b, &Row::IndexB);
  std::sort(rows.begin(), rows.end(),
            [&](const Row& x, const Row& y) { return keyLess((x.*keyField).Str(), (y.*keyField).Str()); });
  return rows;
}

EDiffRowState judgeClass(const SClassData& a, const SClassData& b, bool bHideWarnings) {
  const unsigned int uA = a.CasesTotal - a.Successful;
  const unsigned int uB = b.CasesTotal - b.Successful;
  if (uB < uA) return eDiffBetter;
  if (uB > uA) return eDiffWorse;
  if (!bHideWarnings) {
    if (b.Warnings < a.Warnings) return eDiffBetter;
    if (b.Warnings > a.Warnings) return eDiffWorse;
  }
  return a.CasesTotal != b.CasesTotal ? eDiffDifferent : eDiffNone;
}

EDiffRowState judgeOneSidedClass(const SDiffClassRow& row, const SData& b, bool bIgnoreOneSided, bool bHideWarnings) {
  if (bIgnoreOneSided) return eDiffNone;
  if (row.IndexB == c_DiffMissing) return eDiffDifferent;
  const SClassData& onlyB = b.Classes[row.IndexB];
  const bool unsuccessful = onlyB.Successful != onlyB.CasesTotal;
  return unsuccessful || (onlyB.Warnings != 0 && !bHideWarnings) ? eDiffWorse : eDiffDifferent;
}

EDiffRowState judgeCase(const SCaseData& a, const SCaseData& b, bool bHideWarnings) {
  const Run::ECaseResult rA = a.ResultType;
  const Run::ECaseResult rB = b.ResultType;
  if (rB == Run::eCaseOk && rA != Run::eCaseOk) return eDiffBetter;
  if (rA == rB && a.Warning && !b.Warning) return eDiffBetter;
  if (rB != Run::eCaseOk && rA == Run::eCaseOk) return eDiffWorse;
  if (rA != rB) return eDiffDifferent;
  if (bHideWarnings) return eDiffNone;
  return b.Warning && !a.Warning ? eDiffWorse : eDiffNone;
}

// The warning test here is the reverse of the one for classes: a passing
// case new in B counts as worse for its warning only while warnings are
// hidden. Reports compared over time rely on this reading.
EDiffRowState judgeOneSidedCase(const SDiffCaseRow& row, const SData& b, bool bIgnoreOneSided, bool bHideWarnings) {
  if (bIgnoreOneSided) return eDiffNone;
  if (row.IndexB == c_DiffMissing) return eDiffDifferent;
  const SCaseData& onlyB = b.Cases[row.IndexB];
  if (onlyB.ResultType != Run::eCaseOk) return eDiffWorse;
  if (!bHideWarnings) return eDiffDifferent;
  return onlyB.Warning ? eDiffWorse : eDiffDifferent;
}

void measureCase(SDiffCaseRow& row, const SCaseData& a, const SCaseData& b) {
  row.MemoryRatio =
      a.Memory == 0 ? 0.0f : static_cast<float>(static_cast<double>(b.Memory) / static_cast<double>(a.Memory));
  row.TimeRatio = a.Time == 0.0 ? 0.0 : b.Time / a.Time;
}

}  // namespace

const wchar_t* GetDiffRowTag(EDiffRowState state) {
  switch (state) {
    case eDiffDifferent: return L"<tr class=\"diff\">";
    case eDiffWorse: return L"<tr class=\"worse\">";
    case eDiffBetter: return L"<tr class=\"better\">";
    default: return L"<tr>";
  }
}

const wchar_t* GetDiffRowText(EDiffRowState state) {
  switch (state) {
    case eDiffDifferent: return L"Different";
    case eDiffWorse: return L"Worse";
    case eDiffBetter: return L"Improved";
    default: return L"";
  }
}

std::vector<SDiffClassRow> BuildDiffClassRows(const SData& a, const SData& b, bool bIgnoreOneSided,
                                              bool bHideWarnings) {
  std::vector<SDiffClassRow> rows = buildRows<SDiffClassRow>(
      a.Classes, b.Classes, [](const SClassData& item) { return item.Name; }, &SDiffClassRow::Name);
  for (SDiffClassRow& row : rows) {
    if (row.IndexA != c_DiffMissing && row.IndexB != c_DiffMissing) {
      row.State = judgeClass(a.Classes[row.IndexA], b.Classes[row.IndexB], bHideWarnings);
    } else {
      row.State = judgeOneSidedClass(row, b, bIgnoreOneSided, bHideWarnings);
    }
  }
  return rows;
}

std::vector<SDiffCaseRow> BuildDiffCaseRows(const SData& a, const SData& b, bool bIgnoreOneSided, bool bHideWarnings) {
  std::vector<SDiffCaseRow> rows = buildRows<SDiffCaseRow>(
      a.Cases, b.Cases,
      [](const SCaseData& item) {
        // "%s:%s", put together without the formatter: this runs once per case.
        std::wstring key;
        key.reserve(item.ClassName.Str().size() + item.CaseName.Str().size() + 1);
        key.append(item.ClassName.Str()).append(1, L':').append(item.CaseName.Str());
        return CString(std::move(key));
      },
      &SDiffCaseRow::Key);
  for (SDiffCaseRow& row : rows) {
    if (row.IndexA != c_DiffMissing && row.IndexB != c_DiffMissing) {
      const SCaseData& caseA = a.Cases[row.IndexA];
      const SCaseData& caseB = b.Cases[row.IndexB];
      measureCase(row, caseA, caseB);
      row.State = judgeCase(caseA, caseB, bHideWarnings);
    } else {
      row.State = judgeOneSidedCase(row, b, bIgnoreOneSided, bHideWarnings);
    }
  }
  return rows;
}

}  // namespace TestSuite::Report
