// UnitTestFactory: making test instances and finding subtests by name.
#include "UnitTestFactory.h"

std::unique_ptr<ZoUnitTest> CreateUnitTestInstance(const CString& className) {
  const XbRTTI::FnCreate create = XbRTTI::getCreate(className);
  if (!create) return nullptr;
  std::unique_ptr<IObject> object = create();
  auto* test = dynamic_cast<ZoUnitTest*>(object.get());
  if (!test) return nullptr;            // `object` destroys what is no test
  static_cast<void>(object.release());  // now owned through `test`, which may point elsewhere in it
  return std::unique_ptr<ZoUnitTest>(test);
}

std::optional<unsigned int> FindSubtestIndex(const ZoUnitTest& test, const CString& name) {
  const XbArray<CString>& names = test.GetSubtestNames();
  for (unsigned int i = 0; i < names.GetCount(); ++i) {
    if (names[i] == name) return i;
  }
  return std::nullopt;
}
