// ScriptedCases: data trees of scripted cases.
#include "ScriptedCases.h"

namespace TestSupport {

void WriteScriptedClass(const TempDirectory& root, const CString& classDir,
                        std::initializer_list<std::pair<const char*, const char*>> cases) {
  root.MakeDirectory(classDir);
  for (const auto& [name, script] : cases) root.WriteFile(classDir + L"/" + CString::FromUtf8(name), script);
}

}  // namespace TestSupport
