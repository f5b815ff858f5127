// ShardSelection: the part of the collected cases that one of several
// machines runs, placed by a stable hash of each case or balanced by the
// case times of an earlier run.
//
// A case is placed by its data directory relative to the data root
// together with its key, so that adding a case moves no other case and a
// class that stands in many directories spreads over the parts. The bytes
// hashed are UTF-8: the relative directory with a '/' after every name
// (nothing when the class is the data root itself), then the key "%s:%s"
// of class and case, e.g. "group/CMyTest/CMyTest:case 1". The part is the
// low half of their MurmurHash3 (x64, 128 bit, seed 0) modulo the count.
#pragma once

#include <string>
#include <vector>

#include "ZoTestSuiteTree.h"

namespace TestSuite {

// The bytes that place `testCase` of `unitTest` when the data root is
// `dataRoot` (with or without a '/' at the end).
std::string GetShardKeyBytes(const CString& dataRoot, const SUnitTest& unitTest, const SUnitTest::SCase& testCase);

// The part, below `count`, of the case with the key bytes `keyBytes`.
unsigned int GetShardOfKey(const std::string& keyBytes, unsigned int count);

// Balances entries with the given `times` over `count` parts: the longest
// first (equal times in their order), each to the part with the least time
// so far, on a tie the one with fewer entries, then the lower index. Gives
// the part of each entry. The same times give the same parts.
std::vector<unsigned int> AssignShardsByTime(const std::vector<double>& times, unsigned int count);

// The time of a case that `caseTimes` does not know: the median of its
// times, 0 when it is empty.
double GetMedianCaseTime(const XbMap<CString, double>& caseTimes);

// Keeps the cases of part `shard.uiIndex` of `shard.uiCount` in their order;
// a class left without cases goes. A count of 1 keeps everything.
void ApplyShard(XbArray<SUnitTest>& unitTests, const CString& dataRoot, const SShard& shard);

// The run tag that says which part ran: "shard 2 of 4" for the part with
// index 1 of 4. It names the part from 1 and holds no '/', since a run tag
// becomes part of the report's file name.
CString MakeShardRunTag(unsigned int uiIndex, unsigned int uiCount);
// Whether `tag` has the form that MakeShardRunTag gives.
bool IsShardRunTag(const CString& tag);

}  // namespace TestSuite
