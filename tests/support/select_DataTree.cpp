// select_DataTree: data trees for the selection tests.
#include "select_DataTree.h"

#include "foundation/platform/Library.h"

std::string LoadTestLibrary(const char* name) {
  const std::string path = std::string(ZO_BIN_DIR) + "/" + name + ".so";
  return ZoPlatform::Library::Load(path) ? std::string() : path + ": " + ZoPlatform::Library::GetLastError();
}

std::string LoadSelectTestClasses() {
  static const std::string s_sError = LoadTestLibrary("discovery_TestClasses");
  return s_sError;
}

CString SelectDataTree::Dir(const CString& relative) const {
  m_dir.MakeDirectory(relative);
  return m_dir.Path() + relative + L"/";
}

CString SelectDataTree::Class(const CString& relative, std::initializer_list<const char*> cases) const {
  const CString dir = Dir(relative);
  std::string lines;
  for (const char* name : cases) lines += std::string(name) + "\n";
  if (cases.size() != 0) m_dir.WriteFile(relative + L"/cases.txt", lines);
  return dir;
}

void SelectDataTree::ExtraInfo(const CString& relative, const std::string& xml) const {
  m_dir.WriteFile(relative + L"/#ExtraInfo.xml", xml);
}

CString SelectDataTree::File(const CString& relative, const std::string& bytes) const {
  m_dir.WriteFile(relative, bytes);
  return m_dir.Path() + relative;
}
