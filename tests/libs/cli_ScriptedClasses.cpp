// cli_ScriptedClasses: test classes for the end-to-end tests of the front
// end. CliScripted and CliSecond list the "*.case" files of their data
// directory; the first word of each file says what its case does:
//   pass | fail | dataerror | different | throw | result N | leak N |
//   output N (writes N characters of output) | info TEXT (one info line) |
//   sleep N (passes after N seconds; with a time-out below N it is killed) |
//   flaky N (fails its first N attempts, then passes) | crashy N (ends its
//   process with abort() on its first N attempts, then passes) | crash
//   (always ends its process). The attempts are counted in a file beside
//   the case, "NAME.case.attempts", so that they survive a process.
// CliVanishing lists "stays", and "vanishes" only the first time a process
// asks it, so that the case is gone between discovery and run.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "SystemPath.h"
#include "WholeFile.h"
#include "ZoUnitTest.h"

namespace {

void* volatile g_leak = nullptr;

// The number of earlier attempts of the case at `casePath`, counted up by
// one for this attempt in the file beside it.
int countAttempt(const std::string& casePath) {
  const std::string counter = casePath + ".attempts";
  const int earlier = std::atoi(TestSupport::ReadWholeFile(counter).c_str());
  TestSupport::WriteWholeFile(counter, std::to_string(earlier + 1));
  return earlier;
}

}  // namespace

class CliScripted : public ZoUnitTestFileBased {
  XB_DECLARE_DYNCREATE(CliScripted)
  CliScripted() : ZoUnitTestFileBased(L"*.case") {}

 protected:
  EResult OnRunSubtest(unsigned int index) override {
    std::istringstream script(TestSupport::ReadWholeFile(PathToSystem(GetFilePath(index))));
    std::string verb, argument;
    script >> verb;
    std::getline(script >> std::ws, argument);
    if (verb == "pass") return eSuccess;
    if (verb == "fail") {
      Error(L"%S fails on purpose", GetFilenames()[index].ToUtf8());
      return eFailure;
    }
    if (verb == "dataerror") return eDataError;
    if (verb == "different") return eDifferentOutput;
    if (verb == "throw") throw std::runtime_error("scripted");
    if (verb == "result") return static_cast<EResult>(std::atoi(argument.c_str()));
    if (verb == "leak") g_leak = std::malloc(static_cast<std::size_t>(std::atoll(argument.c_str())));
    if (verb == "output") *GetMessageStream() << CString(L'o', std::atoi(argument.c_str()));
    if (verb == "info") Info(L"%S", argument);
    if (verb == "sleep") std::this_thread::sleep_for(std::chrono::seconds(std::atoi(argument.c_str())));
    if (verb == "crash") std::abort();
    if (verb == "flaky" || verb == "crashy") {
      const int earlier = countAttempt(GetFilePath(index).ToUtf8());
      if (earlier >= std::atoi(argument.c_str())) return eSuccess;
      if (verb == "crashy") std::abort();
      Error(L"attempt %d fails on purpose", earlier + 1);
      return eFailure;
    }
    return eSuccess;
  }
};
XB_IMPLEMENT_DYNCREATE(CliScripted, ZoUnitTestFileBased);

class CliSecond : public CliScripted {
  XB_DECLARE_DYNCREATE(CliSecond)
};
XB_IMPLEMENT_DYNCREATE(CliSecond, CliScripted);

class CliVanishing : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(CliVanishing)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    static std::atomic<int> s_asked{0};
    names.Add(L"stays");
    if (s_asked.fetch_add(1) == 0) names.Add(L"vanishes");
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};
XB_IMPLEMENT_DYNCREATE(CliVanishing, ZoUnitTest);
