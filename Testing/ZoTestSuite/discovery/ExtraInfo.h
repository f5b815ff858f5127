// ExtraInfo: the reader of a test class's configuration file
// "#ExtraInfo.xml", which names the people responsible for the class and
// sets parameters on its cases.
//
// The file is looked for only directly in the class's data directory; no
// value is inherited from a parent directory. Parameters are chosen per case
// by wildcard over the case names, and only what the file sets lands in a
// case's Params: an absent key means that the run's default holds.
#pragma once

#include "ZoTestSuiteTree.h"

namespace TestSuite {

// Reads `dataDir` + "#ExtraInfo.xml" (`dataDir` ends in '/') into the record
// in the making: appends its contacts to `unitTest.Contacts` and stores its
// parameters into the `Params` of the matching cases of `unitTest.Cases`.
//
// A missing file is normal and silent. Every other problem is a warning in
// c_GOLDENROD; a file that does not parse is not applied at all, and a
// `name` wildcard that is no valid pattern is warned about with the file's
// path, after which none of its TestCase elements apply.
void ReadExtraInfo(const CString& dataDir, SUnitTest& unitTest);

}  // namespace TestSuite
