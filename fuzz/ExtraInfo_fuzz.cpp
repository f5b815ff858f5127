// ExtraInfo_fuzz: a class's "#ExtraInfo.xml" of arbitrary bytes, read into a
// class record whose case names the wildcards of the file may match.
#include <cstddef>
#include <cstdint>
#include <regex>

#include "FuzzInput.h"
#include "discovery/ExtraInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace TestSuite;
  FuzzSupport::WriteInput(L"#ExtraInfo.xml", data, size);
  SUnitTest unitTest;
  unitTest.Name = L"Klasse";
  unitTest.DataDir = FuzzSupport::ScratchDirectory();
  for (const wchar_t* name : {L"a.case", L"daily-1.in", L"power.expr", L"Straße.case", L""}) {
    SUnitTest::SCase testCase;
    testCase.Name = name;
    unitTest.Cases.Add(testCase);
  }
  try {
    ReadExtraInfo(unitTest.DataDir, unitTest);
  } catch (const std::regex_error&) {
    // A wildcard that makes no valid expression: the documented answer.
  }
  return 0;
}
