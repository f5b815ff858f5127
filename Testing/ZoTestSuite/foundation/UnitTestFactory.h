// UnitTestFactory: the one place where instances of test classes are made,
// and the search of a subtest by its name.
//
// Both are called from every worker thread; the registry they use is
// thread-safe.
#pragma once

#include <memory>
#include <optional>

#include "CString.h"
#include "ZoUnitTest.h"

// A new instance of the test class registered under `className`. Empty if
// the class is unknown, cannot be created, or is no ZoUnitTest (such an
// object is destroyed at once). The caller owns the instance.
std::unique_ptr<ZoUnitTest> CreateUnitTestInstance(const CString& className);

// The index of the first subtest, in index order, whose name equals `name`
// exactly (case-sensitive); empty if there is none. Asks GetSubtestCount
// before each step, so it stays right for whatever list the instance holds.
std::optional<unsigned int> FindSubtestIndex(const ZoUnitTest& test, const CString& name);
