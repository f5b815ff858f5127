#include "RunTestClasses.h"

#include <cstdlib>
#include <stdexcept>

#include "UnitTestRecords.h"

namespace RunTestClasses {

std::vector<std::string>& DebugLog() {
  static std::vector<std::string> log;
  return log;
}

std::vector<std::string>& RecreateLog() {
  static std::vector<std::string> log;
  return log;
}

TestSuite::SUnitTest MakeClass(const wchar_t* name, std::initializer_list<const wchar_t*> cases) {
  return TestSupport::MakeClass(name, L"/nonexistent/", cases);
}

// Keeps an allocation away from the optimiser.
void* volatile g_sink = nullptr;

TestSuite::SCaseResult ExecuteOneCase(const TestSuite::SSetup& setup, const TestSuite::SUnitTest& unitTest,
                                      unsigned int caseIndex, const TestSuite::SRunOptions& options,
                                      TestSuite::SCaseContext& context, const TestSuite::Run::SCallbacks& callbacks) {
  using namespace TestSuite;
  const XbArray<SUnitTest> classes;
  const SRunContext run{
      setup, classes, options, callbacks, XbDateTime(context.uiRunDate), *context.pClock, *context.pChildStarter};
  SCaseResult row;
  row.uiCaseIndex = caseIndex;
  ExecuteCase(run, unitTest, unitTest.Cases[caseIndex], context, row);
  return row;
}

}  // namespace RunTestClasses

using namespace RunTestClasses;

class RtResults : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RtResults)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (int i = 0; i <= 6; ++i) names.Add(FormatString(L"r%d", i));
  }
  EResult OnRunSubtest(unsigned int index) override {
    Info(L"subtest %u", index);
    return static_cast<EResult>(index);
  }
};
XB_IMPLEMENT_DYNCREATE(RtResults, ZoUnitTest);

class RtThrows : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RtThrows)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    names.Add(L"throws");
    names.Add(L"throwsInt");
  }
  EResult OnRunSubtest(unsigned int index) override {
    Error(L"before the throw");
    if (index == 0) throw std::runtime_error("broken");
    throw 42;
  }
};
XB_IMPLEMENT_DYNCREATE(RtThrows, ZoUnitTest);

class RtMemory : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RtMemory)
 public:
  ~RtMemory() override {
    if (m_bLeakInDestructor) g_sink = std::malloc(64);
  }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (const wchar_t* name : {L"leak100", L"clean", L"destructorLeak"}) names.Add(name);
    names.Add(L"output:1048575");
    names.Add(L"output:1048600");
  }
  EResult OnRunSubtest(unsigned int index) override {
    const CString name = GetSubtestName(index);
    if (name == L"leak100") g_sink = std::malloc(100);
    if (name == L"clean") {
      g_sink = std::malloc(500);
      std::free(g_sink);
    }
    if (name == L"destructorLeak") m_bLeakInDestructor = true;
    if (name.Left(7) == L"output:") {
      const int count = std::wcstol(name.Mid(7).GetString(), nullptr, 10);
      *GetMessageStream() << CString(L'x', count);
      g_sink = std::malloc(8);
    }
    return eSuccess;
  }

 private:
  bool m_bLeakInDestructor = false;
};
XB_IMPLEMENT_DYNCREATE(RtMemory, ZoUnitTest);

class RtWarmUpLeak : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RtWarmUpLeak)
 public:
  bool WarmUp() override {
    g_sink = std::malloc(32);
    return true;
  }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(RtWarmUpLeak, ZoUnitTest);

class RtDuplicate : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RtDuplicate)
 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    names.Add(L"same");
    names.Add(L"same");
  }
  EResult OnRunSubtest(unsigned int index) override { return index == 0 ? eSuccess : eFailure; }
};
XB_IMPLEMENT_DYNCREATE(RtDuplicate, ZoUnitTest);

class RtDebug : public ZoUnitTest, public IDebugging {
  XB_DECLARE_DYNCREATE(RtDebug)
 public:
  bool SupportsOption(int key) override {
    DebugLog().push_back("Supports(" + std::to_string(key) + ")");
    return key != 2;
  }
  void SetOption(int key, bool value) override {
    DebugLog().push_back("Set(" + std::to_string(key) + "," + (value ? "true" : "false") + ")");
  }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"only"); }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(RtDebug, ZoUnitTest);

class RtRecreate : public ZoUnitTest, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(RtRecreate)
 public:
  bool CanRecreate(unsigned int index) override { return GetSubtestName(index) != L"keep"; }
  bool Recreate(unsigned int index) override {
    if (GetSubtestName(index) == L"fails") throw std::runtime_error("cannot");
    RecreateLog().push_back(GetSubtestName(index).ToUtf8());
    return true;
  }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    for (const wchar_t* name : {L"renew", L"keep", L"fails"}) names.Add(name);
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(RtRecreate, ZoUnitTest);
