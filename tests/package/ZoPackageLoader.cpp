// ZoPackageLoader: loads a test library built by a test author, checks that
// loading registers the named class, runs all its subtests on a data
// directory and checks that unloading removes the class again.
//
//   ZoPackageLoader LIBRARY CLASS DATADIR
//
// Prints one line per subtest and the class's messages. Exit code 0 if the
// class was registered, had subtests, all of them passed and it was gone
// after unloading; 1 otherwise.
#include <cstdio>
#include <string>

#include "foundation/UnitTestFactory.h"
#include "foundation/ZoUnitTest.h"
#include "foundation/platform/Library.h"

namespace {

int fail(const std::string& text) {
  std::fprintf(stderr, "ZoPackageLoader: %s\n", text.c_str());
  return 1;
}

// Runs every subtest of a fresh instance; false if one does not pass.
bool runAll(const CString& className, const CString& dataDir) {
  std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(className);
  if (!test) {
    fail("no instance of " + className.ToUtf8());
    return false;
  }
  XbStreamWriteASCIIStringT<CString> messages;
  test->SetMessageStream(messages);
  test->SetDataDirectory(dataDir);
  test->InitSubtests();
  bool passed = test->GetSubtestCount() > 0;
  for (unsigned int i = 0; i < test->GetSubtestCount(); ++i) {
    const ZoUnitTest::EResult result = test->RunUnitTest(i);
    std::printf("%s: %d\n", test->GetSubtestName(i).ToUtf8().c_str(), static_cast<int>(result));
    passed = passed && result == ZoUnitTest::eSuccess;
  }
  std::printf("%s", messages.GetString().ToUtf8().c_str());
  return passed;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return fail("usage: ZoPackageLoader LIBRARY CLASS DATADIR");
  const CString className = CString::FromUtf8(argv[2]);
  if (XbRTTI::Find(className)) return fail("class registered before its library was loaded");
  ZoPlatform::Library::Handle library = ZoPlatform::Library::Load(argv[1]);
  if (!library) return fail("cannot load: " + ZoPlatform::Library::GetLastError());
  const XbRTTI* rtti = XbRTTI::Find(className);
  if (!rtti || !rtti->IsKindOf(ZoUnitTest::RTTI))
    return fail("loading did not register a test class " + std::string(argv[2]));
  if (!runAll(className, CString::FromUtf8(argv[3]))) return fail("not all subtests passed");
  if (!ZoPlatform::Library::Unload(library)) return fail("cannot unload: " + ZoPlatform::Library::GetLastError());
  if (XbRTTI::Find(className)) return fail("class still registered after unloading");
  std::printf("ok\n");
  return 0;
}
