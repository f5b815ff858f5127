// ExtraInfo: the reader of a test class's "#ExtraInfo.xml".
#include "discovery/ExtraInfo.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <regex>

#include "foundation/ZoColorRGBA.h"
#include "foundation/ZoFileSystem.h"
#include "services/COut.h"
#include "services/Utils.h"
#include "services/xml/XMLNode.h"

namespace TestSuite {
namespace {

// The configuration this library was built as. A TestCase element that names
// another configuration is meant for another build and is ignored whole.
const wchar_t* const c_sBuildConfigurationName = L"Release";

const char* const c_sFileName = "#ExtraInfo.xml";
const char* const c_sRootTag = "ExtraInfo";

// Parameters read as bool (preset true) and as unsigned 32-bit (preset 0).
const char* const c_sBoolParameters[] = {"Enable", "ReportMemLeak", "Parallel", "External", "Isolated"};
const char* const c_sNumberParameters[] = {"TimeOutSec", "MessageReportMax"};

template <std::size_t N>
bool isOneOf(const char* name, const char* const (&names)[N]) {
  for (const char* candidate : names)
    if (std::strcmp(name, candidate) == 0) return true;
  return false;
}

void warn(const wchar_t* format, const CString& className, const CString& elementName) {
  COut::Write(format, className, elementName).Color(ZoColorRGBA::c_GOLDENROD);
}

SUnitTest::SContact readContact(const XMLNode& contact) {
  SUnitTest::SContact result;
  result.Name = contact.getChildNode("Name").getWideText(0);
  result.Email = contact.getChildNode("Email").getWideText(0);
  result.Role = contact.getWideAttribute("role");
  return result;
}

// Stores one parameter element into a case's Params; element names are
// compared case-sensitively, so a wrongly cased name is unknown.
void storeParameter(const XMLNode& parameter, const CString& className, SUnitTest::SCase& testCase) {
  const char* name = parameter.getName();
  const char* key = name ? name : "";
  if (isOneOf(key, c_sBoolParameters)) {
    bool bValue = true;
    Utils::GetBool(parameter, bValue);
    testCase.Params.SetAt(parameter.widen(key), XbVariant(bValue));
  } else if (isOneOf(key, c_sNumberParameters)) {
    unsigned int uiValue = 0;
    Utils::GetUInt32(parameter, uiValue);
    testCase.Params.SetAt(parameter.widen(key), XbVariant(static_cast<std::uint32_t>(uiValue)));
  } else {
    warn(L"Warnung XML '%s': Unbekannter Parameter '%s'.\n", className, parameter.widen(key));
  }
}

// The expression of one TestCase element, or none when the element is meant
// for another configuration. A missing `name` is the empty pattern, which
// matches no case that has a name.
std::optional<Utils::CWildcard> caseExpression(const XMLNode& element) {
  const CString configuration = element.getWideAttribute("configuration");
  if (!configuration.IsEmpty() && configuration != c_sBuildConfigurationName) return std::nullopt;
  return Utils::CWildcard(element.getWideAttribute("name"), true);
}

// Every case against every applicable element, in document order, so the
// last matching element wins for each key it mentions.
// A wildcard that is no valid pattern is warned about with the file's
// path, and then none of the file's TestCase elements apply.
void applyTestCases(const CString& path, const XbArray<XMLNode>& elements, SUnitTest& unitTest) {
  XbArray<XMLNode> applicable;
  XbArray<Utils::CWildcard> expressions;
  for (const XMLNode& element : elements) {
    try {
      std::optional<Utils::CWildcard> expression = caseExpression(element);
      if (!expression) continue;
      applicable.Add(element);
      expressions.Add(std::move(*expression));
    } catch (const std::regex_error&) {
      COut::Write(L"Warnung: Ungültiges Muster '%s' in Datei %s.\n", element.getWideAttribute("name"), path)
          .Color(ZoColorRGBA::c_GOLDENROD);
      return;
    }
  }
  for (SUnitTest::SCase& testCase : unitTest.Cases) {
    for (unsigned int i = 0; i < applicable.GetCount(); ++i) {
      if (!expressions[i].Match(testCase.Name.Str(), true)) continue;
      const XMLNode& element = applicable[i];
      for (int child = 0; child < element.getChildCount(); ++child)
        storeParameter(element.getChildNode(child), unitTest.Name, testCase);
    }
  }
}

}  // namespace

void ReadExtraInfo(const CString& dataDir, SUnitTest& unitTest) {
  const CString path = dataDir + CString(c_sFileName);
  if (!ZoFileSystem::Exists(path)) return;

  XMLResults results;
  const XMLNode root = XMLNode::parseFile(path, c_sRootTag, &results);
  if (results.error != eXMLErrorNone) {
    COut::Write(L"Warnung: XML-Syntax Fehler in Datei %s.\n", path).Color(ZoColorRGBA::c_GOLDENROD);
    return;
  }

  XbArray<XMLNode> testCaseElements;
  for (int i = 0; i < root.getChildCount(); ++i) {
    const XMLNode child = root.getChildNode(i);
    const char* name = child.getName();
    const char* elementName = name ? name : "";
    if (std::strcmp(elementName, "Contact") == 0) unitTest.Contacts.Add(readContact(child));
    else if (std::strcmp(elementName, "TestCase") == 0) testCaseElements.Add(child);
    else warn(L"Warnung XML '%s': Unbekanntes Element '%s'.\n", unitTest.Name, child.widen(elementName));
  }
  if (!testCaseElements.IsEmpty()) applyTestCases(path, testCaseElements, unitTest);
}

}  // namespace TestSuite
