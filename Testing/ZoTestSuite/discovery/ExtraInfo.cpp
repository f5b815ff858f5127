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

// The file's 8-bit texts widened as the system widens all XML text; a
// missing text is an empty one.
CString widen(const char* text) { return text ? CString(text) : CString(); }

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
  result.Name = widen(contact.getChildNode("Name").getText(0));
  result.Email = widen(contact.getChildNode("Email").getText(0));
  result.Role = widen(contact.getAttribute("role"));
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
    testCase.Params.SetAt(widen(key), XbVariant(bValue));
  } else if (isOneOf(key, c_sNumberParameters)) {
    unsigned int uiValue = 0;
    Utils::GetUInt32(parameter, uiValue);
    testCase.Params.SetAt(widen(key), XbVariant(static_cast<std::uint32_t>(uiValue)));
  } else {
    warn(L"Warnung XML '%s': Unbekannter Parameter '%s'.\n", className, widen(key));
  }
}

// The expression of one TestCase element, or none when the element is meant
// for another configuration. A missing `name` is the empty pattern, which
// matches no case that has a name.
std::optional<std::wregex> caseExpression(const XMLNode& element) {
  const CString configuration = widen(element.getAttribute("configuration"));
  if (!configuration.IsEmpty() && configuration != c_sBuildConfigurationName) return std::nullopt;
  return Utils::GenerateWildcardRegex(widen(element.getAttribute("name")), true);
}

// Every case against every applicable element, in document order, so the
// last matching element wins for each key it mentions.
void applyTestCases(const XbArray<XMLNode>& elements, SUnitTest& unitTest) {
  XbArray<XMLNode> applicable;
  XbArray<std::wregex> expressions;
  for (const XMLNode& element : elements) {
    std::optional<std::wregex> expression = caseExpression(element);
    if (!expression) continue;
    applicable.Add(element);
    expressions.Add(std::move(*expression));
  }
  for (SUnitTest::SCase& testCase : unitTest.Cases) {
    for (unsigned int i = 0; i < applicable.GetCount(); ++i) {
      if (!std::regex_match(testCase.Name.Str(), expressions[i])) continue;
      const XMLNode& element = applicable[i];
      for (int child = 0; child < element.getChildCount(); ++child)
        storeParameter(element.getChildNode(child), unitTest.Name, testCase);
    }
  }
}

}  // namespace

void ReadExtraInfo(const CString& dataDir, SUnitTest& unitTest) {
  const CString path = dataDir + widen(c_sFileName);
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
    else warn(L"Warnung XML '%s': Unbekanntes Element '%s'.\n", unitTest.Name, widen(elementName));
  }
  if (!testCaseElements.IsEmpty()) applyTestCases(testCaseElements, unitTest);
}

}  // namespace TestSuite
