// ApiTestLibrary: a small test library that the tests of the test-author
// API load and unload at run time. Its class registers on load and leaves
// the registry on unload; it implements both optional interfaces so that
// casts to them can be tried across the library boundary.
#include "ZoUnitTest.h"

class ApiLoadedTest : public ZoUnitTest, public IDebugging, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(ApiLoadedTest)

  bool SupportsOption(int key) override { return key == 1; }
  void SetOption(int key, bool value) override {
    if (key == 1) m_bVerbose = value;
  }
  bool CanRecreate(unsigned int subtest) override { return subtest == 0; }
  bool Recreate(unsigned int subtest) override { return subtest == 0; }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    names.Add(L"passes");
    names.Add(L"fails");
  }
  EResult OnRunSubtest(unsigned int index) override {
    if (m_bVerbose) Info(L"subtest %u in %s", index, GetDataDirectory());
    if (index == 0) return eSuccess;
    Error(L"subtest %u fails on purpose", index);
    return eFailure;
  }

 private:
  bool m_bVerbose = false;
};

XB_IMPLEMENT_DYNCREATE(ApiLoadedTest, ZoUnitTest);
