// Test classes for the run tests, registered in the test program itself.
// Every class lists fixed subtests; what each does is said beside it.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "ZoTestSuiteTree.h"
#include "foundation/ZoUnitTest.h"
#include "run/CaseExecution.h"

namespace RunTestClasses {

// Subtests "r0" .. "r6": subtest i returns the value i (5 and 6 lie outside
// the result values).
inline constexpr const wchar_t* sc_szResults = L"RtResults";
// Subtests "throws" (a std::runtime_error) and "throwsInt" (an int).
inline constexpr const wchar_t* sc_szThrows = L"RtThrows";
// Subtest "leak100" leaks 100 bytes; "clean" allocates and frees;
// "destructorLeak" makes the destructor leak 64 bytes; "output:N" writes N
// characters of output and leaks 8 bytes.
inline constexpr const wchar_t* sc_szMemory = L"RtMemory";
// Subtest "only"; WarmUp leaks 32 bytes.
inline constexpr const wchar_t* sc_szWarmUpLeak = L"RtWarmUpLeak";
// Two subtests called "same": the first passes, the second fails.
inline constexpr const wchar_t* sc_szDuplicate = L"RtDuplicate";
// Implements IDebugging; records the order of its calls.
inline constexpr const wchar_t* sc_szDebug = L"RtDebug";
// Implements IUnitTestRecreate: "renew" can be renewed, "keep" cannot,
// "fails" throws in Recreate.
inline constexpr const wchar_t* sc_szRecreate = L"RtRecreate";

// What RtDebug saw, as "Supports(1) Set(1,true) ..."; and RtRecreate's
// renewed subtests.
std::vector<std::string>& DebugLog();
std::vector<std::string>& RecreateLog();

// A class record as discovery would make it, with the given cases and a
// data directory that does not exist.
TestSuite::SUnitTest MakeClass(const wchar_t* name, std::initializer_list<const wchar_t*> cases);

// Runs the case `caseIndex` of `unitTest` through ExecuteCase as a run of
// `setup` with `options` would, on the context's clock and child starter,
// and gives its row.
TestSuite::SCaseResult ExecuteOneCase(const TestSuite::SSetup& setup, const TestSuite::SUnitTest& unitTest,
                                      unsigned int caseIndex, const TestSuite::SRunOptions& options,
                                      TestSuite::SCaseContext& context,
                                      const TestSuite::Run::SCallbacks& callbacks = {});

}  // namespace RunTestClasses
