#include "IsolationTestClasses.h"

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>

#include "foundation/ZoUnitTest.h"

namespace IsolationTestClasses {

namespace {

struct SGate {
  std::mutex lock;
  std::condition_variable changed;
  unsigned int uiWidth = 1;
  unsigned int uiEntered = 0;
};

SGate& gate() {
  static SGate instance;
  return instance;
}

struct SLog {
  std::mutex lock;
  std::vector<SRecord> records;
};

SLog& log() {
  static SLog instance;
  return instance;
}

// The name a worker thread carries: its class name, cut by the system to
// fifteen bytes.
constexpr const char* sc_szWorkerThreadName = "TestSuite::Run:";

}  // namespace

void ResetGate(unsigned int width) {
  std::lock_guard<std::mutex> guard(gate().lock);
  gate().uiWidth = width;
  gate().uiEntered = 0;
}

std::vector<SRecord> Records() {
  std::vector<SRecord> records;
  {
    std::lock_guard<std::mutex> guard(log().lock);
    records = log().records;
  }
  std::sort(records.begin(), records.end(), [](const SRecord& a, const SRecord& b) { return a.start < b.start; });
  return records;
}

void ClearRecords() {
  std::lock_guard<std::mutex> guard(log().lock);
  log().records.clear();
}

unsigned int CountWorkerThreads() {
  unsigned int count = 0;
  std::error_code error;
  for (std::filesystem::directory_iterator it("/proc/self/task", error), end; !error && it != end;
       it.increment(error)) {
    std::ifstream file(it->path() / "comm");
    std::string name;
    std::getline(file, name);
    if (name == sc_szWorkerThreadName) ++count;
  }
  return count;
}

}  // namespace IsolationTestClasses

using namespace IsolationTestClasses;

class IsoGate : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoGate)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (int i = 0; i < 300; ++i) names.Add(FormatString(L"g%d", i));
  }
  EResult OnRunSubtest(unsigned int) override {
    std::unique_lock<std::mutex> guard(gate().lock);
    ++gate().uiEntered;
    gate().changed.notify_all();
    const bool full =
        gate().changed.wait_for(guard, std::chrono::seconds(30), [] { return gate().uiEntered >= gate().uiWidth; });
    return full ? eSuccess : eFailure;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoGate, ZoUnitTest);

class IsoRecorder : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoRecorder)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (int i = 0; i < 10; ++i) names.Add(FormatString(L"r%d", i));
  }
  EResult OnRunSubtest(unsigned int index) override {
    SRecord record;
    record.sName = GetSubtestName(index).Str();
    record.thread = std::this_thread::get_id();
    record.start = std::chrono::steady_clock::now();
    record.uiWorkerThreads = CountWorkerThreads();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    record.end = std::chrono::steady_clock::now();
    std::lock_guard<std::mutex> guard(log().lock);
    log().records.push_back(record);
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoRecorder, ZoUnitTest);
