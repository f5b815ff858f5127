// DiscoveryNames: the names of a collected list, as plain vectors that
// GoogleTest compares and prints.
#pragma once

#include <string>
#include <vector>

#include "ZoTestSuiteTree.h"

using Names = std::vector<std::wstring>;

inline Names ClassNames(const XbArray<TestSuite::SUnitTest>& unitTests) {
  Names names;
  for (const TestSuite::SUnitTest& unitTest : unitTests) names.push_back(unitTest.Name.Str());
  return names;
}

inline Names CaseNames(const TestSuite::SUnitTest& unitTest) {
  Names names;
  for (const TestSuite::SUnitTest::SCase& testCase : unitTest.Cases) names.push_back(testCase.Name.Str());
  return names;
}
