// ShardTimes: the case times of an earlier report, by which the parts of a
// sharded run are balanced.
#pragma once

#include "ZoTestSuiteTree.h"
#include "report/ReportData.h"

namespace TestSuite {

// The time of each key "%s:%s" of `report`: the mean of its rows, since a
// class in several directories, or a run with repetitions, has several.
XbMap<CString, double> GetCaseTimes(const Report::SData& report);

// Balances `shard` by the case times of the XML report `path`. False, with
// `shard` unchanged, when the report is missing or does not load; a red
// line has said so.
bool LoadShardTimes(const CString& path, SShard& shard);

}  // namespace TestSuite
