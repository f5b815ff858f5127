// Test classes of the worker and isolation tests, registered in the test
// program itself; what each does is said beside it. Every class lists
// fixed subtests.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace IsolationTestClasses {

// Subtests "g0" .. "g299". Each enters the gate and waits until as many
// cases as the gate's width have entered (at most 30 seconds); it passes
// if they did and fails if it gave up. So a case passes only if it ran at
// the same time as width - 1 others.
inline constexpr const wchar_t* sc_szGate = L"IsoGate";
// Opens a new gate of `width` and forgets who entered the last one.
void ResetGate(unsigned int width);

// Subtests "r0" .. "r9". Each logs itself and takes 20 milliseconds.
inline constexpr const wchar_t* sc_szRecorder = L"IsoRecorder";

// One case of IsoRecorder as it ran.
struct SRecord {
  std::wstring sName;
  std::chrono::steady_clock::time_point start;
  std::chrono::steady_clock::time_point end;
  std::thread::id thread;
  unsigned int uiWorkerThreads = 0;  // worker threads of the process while it ran
};

// The cases of IsoRecorder since the last ClearRecords, in the order they
// began.
std::vector<SRecord> Records();
void ClearRecords();

// The worker threads of a run that exist in this process now, by their
// thread name.
unsigned int CountWorkerThreads();

}  // namespace IsolationTestClasses
