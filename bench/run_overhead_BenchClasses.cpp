// run_overhead_BenchClasses: the trivial test class of the run overhead
// benchmark, built as the test library run_overhead_BenchClasses.
#include <cwchar>

#include "ZoUnitTest.h"

// Lists as many subtests as the number after the last '-' in the name of
// its data directory's parent (".../g7-100/RunOverheadTrivial/" has 100),
// so that listing them costs no file access. The names are the indices in
// base 36 ("0" to "7pr" for 10,000), short enough to need no allocation.
// Every subtest passes at once.
class RunOverheadTrivial : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(RunOverheadTrivial)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    const unsigned long count = countFromDirectory(GetDataDirectory());
    for (unsigned long i = 0; i < count; ++i) names.Add(base36(i));
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }

 private:
  static unsigned long countFromDirectory(const CString& directory) {
    const std::wstring& path = directory.Str();
    const std::size_t classSlash = path.find_last_of(L'/', path.size() >= 2 ? path.size() - 2 : 0);
    if (classSlash == std::wstring::npos) return 0;
    const std::size_t dash = path.find_last_of(L'-', classSlash);
    return dash == std::wstring::npos ? 0 : std::wcstoul(path.c_str() + dash + 1, nullptr, 10);
  }

  static CString base36(unsigned long value) {
    wchar_t digits[16];
    int at = 15;
    digits[at] = L'\0';
    do {
      digits[--at] = L"0123456789abcdefghijklmnopqrstuvwxyz"[value % 36];
      value /= 36;
    } while (value != 0);
    return CString(digits + at);
  }
};

XB_IMPLEMENT_DYNCREATE(RunOverheadTrivial, ZoUnitTest);
