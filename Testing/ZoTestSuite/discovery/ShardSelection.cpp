// ShardSelection: the placement of cases into the parts of a sharded run.
#include "discovery/ShardSelection.h"

#include <algorithm>
#include <numeric>
#include <regex>

#include "foundation/ZoMurmurHash3.h"

namespace TestSuite {
namespace {

CString makeKey(const SUnitTest& unitTest, const SUnitTest::SCase& testCase) {
  return FormatString(L"%s:%s", unitTest.Name, testCase.Name);
}

// The data directory below the root; a directory outside it counts whole.
CString relativeDirectory(const CString& dataRoot, const CString& dataDir) {
  CString root = dataRoot;
  while (!root.IsEmpty() && root[root.GetLength() - 1] == L'/') root = root.Left(root.GetLength() - 1);
  root += L'/';
  if (dataDir.Left(root.GetLength()) == root) return dataDir.Mid(root.GetLength());
  return dataDir;
}

// Which cases, in list order, belong to the part: by hash or by time.
std::vector<bool> partMembers(const XbArray<SUnitTest>& unitTests, const CString& dataRoot, const SShard& shard) {
  std::vector<bool> members;
  std::vector<double> times;
  const double dMedian = shard.bByTimes ? GetMedianCaseTime(shard.caseTimes) : 0.0;
  for (const SUnitTest& unitTest : unitTests)
    for (const SUnitTest::SCase& testCase : unitTest.Cases) {
      if (shard.bByTimes) {
        const double* time = shard.caseTimes.Find(makeKey(unitTest, testCase));
        times.push_back(time ? *time : dMedian);
      } else {
        members.push_back(GetShardOfKey(GetShardKeyBytes(dataRoot, unitTest, testCase), shard.uiCount) ==
                          shard.uiIndex);
      }
    }
  if (!shard.bByTimes) return members;
  const std::vector<unsigned int> parts = AssignShardsByTime(times, shard.uiCount);
  for (unsigned int part : parts) members.push_back(part == shard.uiIndex);
  return members;
}

}  // namespace

std::string GetShardKeyBytes(const CString& dataRoot, const SUnitTest& unitTest, const SUnitTest::SCase& testCase) {
  return (relativeDirectory(dataRoot, unitTest.DataDir) + makeKey(unitTest, testCase)).ToUtf8();
}

unsigned int GetShardOfKey(const std::string& keyBytes, unsigned int count) {
  if (count <= 1) return 0;
  const ZoMurmurHash3::S128 hash =
      ZoMurmurHash3::GetOptimizedChecksum128(keyBytes.data(), static_cast<unsigned int>(keyBytes.size()), 0);
  return static_cast<unsigned int>(hash.uiLow % count);
}

std::vector<unsigned int> AssignShardsByTime(const std::vector<double>& times, unsigned int count) {
  std::vector<unsigned int> parts(times.size(), 0);
  if (count <= 1) return parts;
  std::vector<std::size_t> order(times.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&times](std::size_t a, std::size_t b) { return times[a] > times[b]; });
  std::vector<double> load(count, 0.0);
  std::vector<std::size_t> entries(count, 0);
  for (std::size_t entry : order) {
    unsigned int best = 0;
    for (unsigned int part = 1; part < count; ++part)
      if (load[part] < load[best] || (load[part] == load[best] && entries[part] < entries[best])) best = part;
    parts[entry] = best;
    load[best] += times[entry];
    ++entries[best];
  }
  return parts;
}

double GetMedianCaseTime(const XbMap<CString, double>& caseTimes) {
  std::vector<double> times;
  for (const auto& entry : caseTimes) times.push_back(entry.second);
  if (times.empty()) return 0.0;
  std::sort(times.begin(), times.end());
  const std::size_t middle = times.size() / 2;
  return times.size() % 2 == 1 ? times[middle] : (times[middle - 1] + times[middle]) / 2.0;
}

void ApplyShard(XbArray<SUnitTest>& unitTests, const CString& dataRoot, const SShard& shard) {
  if (shard.uiCount <= 1) return;
  const std::vector<bool> members = partMembers(unitTests, dataRoot, shard);
  std::size_t next = 0;
  for (SUnitTest& unitTest : unitTests) {
    std::vector<SUnitTest::SCase> kept;
    for (SUnitTest::SCase& testCase : unitTest.Cases.Std())
      if (members[next++]) kept.push_back(std::move(testCase));
    unitTest.Cases.Std() = std::move(kept);
  }
  std::erase_if(unitTests.Std(), [](const SUnitTest& unitTest) { return unitTest.Cases.IsEmpty(); });
}

CString MakeShardRunTag(unsigned int uiIndex, unsigned int uiCount) {
  return FormatString(L"shard %u of %u", uiIndex + 1, uiCount);
}

bool IsShardRunTag(const CString& tag) {
  static const std::wregex c_form(L"shard [1-9][0-9]* of [1-9][0-9]*");
  return std::regex_match(tag.Str(), c_form);
}

}  // namespace TestSuite
