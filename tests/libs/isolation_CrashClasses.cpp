// isolation_CrashClasses: the test library of the isolation tests. Its
// classes do what must cost one case and not the run when the case runs in
// a child process: crash, end the process, hang, flood the output, leak,
// leave processes behind; and one that uses the runtime's facilities for
// the first time in its process.
// Each class lists fixed subtests, so an empty directory named after the
// class is all the data it needs. Only child processes and the front end
// load it; a test program must never run these cases in process.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>

#include "XbDateTime.h"
#include "XbSingleton.h"
#include "XbStream.h"
#include "XbThreadPool.h"
#include "ZoAssertDialog.h"
#include "ZoFileSystem.h"
#include "ZoStreamFile.h"
#include "ZoUniqueId.h"
#include "ZoUnitTest.h"
#include "isolation_ProcessCalls.h"
#include "platform/System.h"

namespace {

void* volatile g_sink = nullptr;
std::atomic<unsigned long long> g_spin{0};
volatile int g_depthLimit = 0;  // 0: no limit; keeps the recursion below from being proven endless

// Each frame holds a page that is written, so the stack runs out quickly.
int recurse(int depth) {
  volatile char page[4096];
  page[0] = static_cast<char>(depth);
  if (g_depthLimit != 0 && depth >= g_depthLimit) return page[0];
  return recurse(depth + 1) + page[0];
}

void addNames(XbArray<CString>& names, std::initializer_list<const wchar_t*> list) {
  for (const wchar_t* name : list) names.Add(name);
}

}  // namespace

// "a", "b", "c" pass and write the id of the process that ran them
// ("pid=N"); "assertDialog" passes and writes whether the assertion dialog
// is on in that process ("assertDialog=1" or "=0").
class IsoPass : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoPass)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { addNames(names, {L"a", L"b", L"c", L"assertDialog"}); }
  EResult OnRunSubtest(unsigned int index) override {
    if (GetSubtestName(index) == L"assertDialog") Info(L"assertDialog=%d", ZoAssertDialog::IsEnabled() ? 1 : 0);
    else Info(L"pid=%u", ZoPlatform::System::GetProcessId());
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoPass, ZoUnitTest);

// Every subtest ends its process: a null pointer written through, abort(),
// exit(0) and a stack overflow.
class IsoCrash : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoCrash)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    addNames(names, {L"nullDereference", L"abort", L"exit0", L"stackOverflow"});
  }
  EResult OnRunSubtest(unsigned int index) override {
    Info(L"about to end the process");
    const CString name = GetSubtestName(index);
    if (name == L"nullDereference") {
      volatile int* volatile pointer = nullptr;
      *pointer = 1;
    } else if (name == L"abort") {
      std::abort();
    } else if (name == L"exit0") {
      std::exit(0);
    } else if (name == L"stackOverflow") {
      g_sink = reinterpret_cast<void*>(static_cast<std::intptr_t>(recurse(0)));
    }
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoCrash, ZoUnitTest);

// Neither subtest ever returns: "endlessLoop" spins, "blockForever" waits
// for a lock that another thread holds for good.
class IsoHang : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoHang)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { addNames(names, {L"endlessLoop", L"blockForever"}); }
  EResult OnRunSubtest(unsigned int index) override {
    if (GetSubtestName(index) == L"endlessLoop") {
      for (;;) g_spin.fetch_add(1, std::memory_order_relaxed);
    }
    static std::mutex lock;
    static std::promise<void> never;
    std::promise<void> held;
    std::thread([&held] {
      std::lock_guard<std::mutex> guard(lock);
      held.set_value();
      never.get_future().wait();
    }).detach();
    held.get_future().wait();
    std::lock_guard<std::mutex> guard(lock);
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoHang, ZoUnitTest);

// "limit" writes exactly 1,048,575 characters 'x', the most a case can
// pass on; "beyondLimit" writes 1,000 more, which are cut.
class IsoOutput : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoOutput)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { addNames(names, {L"limit", L"beyondLimit"}); }
  EResult OnRunSubtest(unsigned int index) override {
    const int count = GetSubtestName(index) == L"limit" ? 1048575 : 1048575 + 1000;
    *GetMessageStream() << CString(L'x', count);
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoOutput, ZoUnitTest);

// "leak" leaves 100 bytes behind.
class IsoLeak : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoLeak)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"leak"); }
  EResult OnRunSubtest(unsigned int) override {
    g_sink = std::malloc(100);
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoLeak, ZoUnitTest);

// "sleep" takes a minute, in short naps: what a cancellation stops.
class IsoSlow : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoSlow)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"sleep"); }
  EResult OnRunSubtest(unsigned int) override {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoSlow, ZoUnitTest);

// "forkSleeper" leaves a copy of its process behind that sleeps for five
// minutes; "killGroup" sends SIGTERM to its own process group. Both pass.
class IsoProcess : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoProcess)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override { addNames(names, {L"forkSleeper", L"killGroup"}); }
  EResult OnRunSubtest(unsigned int index) override {
    if (GetSubtestName(index) == L"forkSleeper") IsolationProcessCalls::LeaveSleepingProcess(300);
    else IsolationProcessCalls::TerminateOwnProcessGroup();
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoProcess, ZoUnitTest);

// Each subtest uses one facility of the runtime the way a test does, and
// passes: "thread" starts and joins a thread, "pool" waits for a task of
// the thread pool, "file" writes, reads and deletes a temporary file,
// "text" formats numbers and the time, "id" makes a unique id. Run first in
// a fresh process, each must cost the case what it costs a case in a
// process that has used it before.
class IsoRuntime : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(IsoRuntime)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    addNames(names, {L"thread", L"pool", L"file", L"text", L"id"});
  }
  EResult OnRunSubtest(unsigned int index) override {
    const CString name = GetSubtestName(index);
    if (name == L"thread") {
      std::thread([] { g_spin.fetch_add(1); }).join();
    } else if (name == L"pool") {
      auto task = XbSingleton<XbThreadPool>::GetInstance().AddTask([] { g_spin.fetch_add(1); }, 1);
      if (!task || !task->Wait()) return eFailure;
    } else if (name == L"file") {
      const CString path = ZoFileSystem::GetDirectory(ZoFileSystem::eTemporary) + L"ZoTestSuite-IsoRuntime-" +
                           ZoUniqueIdT<CString>::GetUniqueID() + L".tmp";
      { ZoStreamWriteASCIIFile(path, 0, 1, 0) << L"text"; }
      std::string bytes;
      const bool read = ZoFileSystem::ReadFile(path, bytes);
      ZoFileSystem::DeleteFileW(path);
      if (!read || bytes != "text") return eFailure;
    } else if (name == L"text") {
      XbStreamWriteASCIIStringT<CString> stream;
      stream << FormatString(L"%s %d %I64u %f %S", L"a", 1, std::uint64_t{2}, 2.5, "b") << std::uint64_t{4};
      if (stream.GetString().IsEmpty()) return eFailure;
      if (XbDateTime::Now().ToString(L"Y-m-d H:i:s.v", true).IsEmpty()) return eFailure;
    } else if (ZoUniqueIdT<CString>::GetUniqueID().IsEmpty()) {
      return eFailure;
    }
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(IsoRuntime, ZoUnitTest);
