// The run list of the archive mode.
#include "tools/ArchiveRunList.h"

#include <cstring>

#include "services/xml/XMLNode.h"

namespace TestSuite {

namespace {

CString firstText(const XMLNode& node) {
  const char* text = node.getText(0);
  return text ? CString(text) : CString();
}

// The field that a child of "Run" fills; null for an unknown child.
CString* fieldOf(SArchiveRun& run, const char* name) {
  struct SField {
    const char* szName;
    CString SArchiveRun::*pField;
  };
  static const SField fields[] = {
      {"BinaryDir", &SArchiveRun::BinaryDir}, {"Config", &SArchiveRun::Config},
      {"Platform", &SArchiveRun::Platform},   {"DataDir", &SArchiveRun::DataDir},
      {"OutDir", &SArchiveRun::OutDir},       {"SelectionFile", &SArchiveRun::SelectionFile},
  };
  for (const SField& field : fields)
    if (std::strcmp(field.szName, name) == 0) return &(run.*field.pField);
  return nullptr;
}

SArchiveRun readRun(const XMLNode& node) {
  SArchiveRun run;
  const char* name = node.getAttribute("name");
  run.name = name ? CString(name) : CString();
  for (int i = 0; i < node.getChildCount(); ++i) {
    const XMLNode child = node.getChildNode(i);
    const char* childName = child.getName();
    if (CString* field = childName ? fieldOf(run, childName) : nullptr) *field = firstText(child);
  }
  // Plain pointers on purpose: these two leave the archive mode's own
  // frame, which takes only texts, and reach its caller.
  if (run.Config != CString(L"Debug") && run.Config != CString(L"Release")) throw L"Ungültige Konfiguration";
  if (run.Platform != CString(L"Win32") && run.Platform != CString(L"x64")) throw L"Ungültige Platform";
  return run;
}

}  // namespace

void SplitArchiveRun(const CString& text, CString& file, CString& runName) {
  const int colon = text.ReverseFind(L':');
  file = colon < 0 ? CString() : text.Left(colon);
  runName = colon < 0 ? text : text.Mid(colon + 1);
}

XbArray<SArchiveRun> ReadArchiveRunList(const CString& path) {
  XMLResults results;
  const XMLNode root = XMLNode::parseFile(path, "ArchiveRun", &results);
  if (results.error != eXMLErrorNone) throw CString(L"XML-Syntax Fehler");
  XbArray<SArchiveRun> runs;
  for (int i = 0; i < root.getChildCount(); ++i) {
    const XMLNode child = root.getChildNode(i);
    const char* name = child.getName();
    if (name && std::strcmp(name, "Run") == 0) runs.Add(readRun(child));
  }
  return runs;
}

const SArchiveRun* FindArchiveRun(const XbArray<SArchiveRun>& runs, const CString& runName) {
  for (const SArchiveRun& run : runs)
    if (run.name == runName) return &run;
  return nullptr;
}

}  // namespace TestSuite
