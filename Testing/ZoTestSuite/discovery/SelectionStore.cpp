// CSelectionStore: the selection file, its reader and writer, and the
// answer for one case.
#include "discovery/SelectionStore.h"

#include <cstring>

#include "foundation/ZoFileSystem.h"
#include "foundation/ZoStreamFile.h"
#include "report/MarkupWriter.h"
#include "services/COut.h"
#include "services/xml/XMLNode.h"

namespace TestSuite {
namespace {

CString caseKey(const CString& className, const CString& caseName) { return className + L":" + caseName; }

// A `default` attribute: exactly "all" is All, any other text None. A
// missing attribute rejects the file.
bool readDefault(const XMLNode& node, CSelectionStore::EDefault& eDefault) {
  const char* value = node.getAttribute("default");
  if (!value) return false;
  eDefault = std::strcmp(value, "all") == 0 ? CSelectionStore::All : CSelectionStore::None;
  return true;
}

bool hasName(const XMLNode& node, const char* name) {
  const char* actual = node.getName();
  return actual && std::strcmp(actual, name) == 0;
}

// The TestCase elements of one UnitTest; false rejects the file.
bool readCases(const XMLNode& unitTest, CSelectionStore::SData::SUnitTestSelection& selection) {
  for (int i = 0; i < unitTest.getChildCount(); ++i) {
    const XMLNode testCase = unitTest.getChildNode(i);
    if (!hasName(testCase, "TestCase")) return false;
    const char* select = testCase.getAttribute("select");
    if (!select) return false;
    CSelectionStore::SData::SCaseSelection caseSelection;
    caseSelection.sName = testCase.getWideAttribute("name");
    caseSelection.bSelect = std::strcmp(select, "true") == 0;
    selection.cases.Add(std::move(caseSelection));
  }
  return true;
}

std::unique_ptr<CSelectionStore::SData> readFile(const CString& path) {
  XMLResults results;
  const XMLNode config = XMLNode::parseFile(path, "Config", &results);
  if (results.error != eXMLErrorNone) return nullptr;
  const XMLNode selection = config.getChildNode("Selection");
  auto data = std::make_unique<CSelectionStore::SData>();
  if (selection.isEmpty() || !readDefault(selection, data->eDefault)) return nullptr;
  for (int i = 0; i < selection.getChildCount(); ++i) {
    const XMLNode unitTest = selection.getChildNode(i);
    if (!hasName(unitTest, "UnitTest")) return nullptr;
    CSelectionStore::SData::SUnitTestSelection unitTestSelection;
    unitTestSelection.sName = unitTest.getWideAttribute("name");
    if (!readDefault(unitTest, unitTestSelection.eDefault) || !readCases(unitTest, unitTestSelection)) return nullptr;
    data->unitTests.Add(std::move(unitTestSelection));
  }
  return data;
}

const wchar_t* defaultText(CSelectionStore::EDefault eDefault) {
  return eDefault == CSelectionStore::All ? L"all" : L"none";
}

void writeUnitTest(ZoStreamWriteASCIIFile& file, const CSelectionStore::SData::SUnitTestSelection& unitTest) {
  if (unitTest.cases.IsEmpty()) {
    file << FormatString(L"\t\t<UnitTest name=\"%s\" default=\"%s\"></UnitTest>\n", unitTest.sName,
                         defaultText(unitTest.eDefault));
    return;
  }
  file << FormatString(L"\t\t<UnitTest name=\"%s\" default=\"%s\">\n", unitTest.sName, defaultText(unitTest.eDefault));
  for (const CSelectionStore::SData::SCaseSelection& testCase : unitTest.cases)
    file << FormatString(L"\t\t\t<TestCase name=\"%s\" select=\"%s\"/>\n", Utils::CMarkupWriter::Clean(testCase.sName),
                         testCase.bSelect ? L"true" : L"false");
  file << L"\t\t</UnitTest>\n";
}

}  // namespace

CSelectionStore::CSelectionStore(std::unique_ptr<SData> data) : m_data(std::move(data)) {
  if (!m_data) return;
  for (const SData::SUnitTestSelection& unitTest : m_data->unitTests) {
    m_classDefaults.SetAt(unitTest.sName, unitTest.eDefault);
    for (const SData::SCaseSelection& testCase : unitTest.cases)
      m_caseSelections.SetAt(caseKey(unitTest.sName, testCase.sName), testCase.bSelect);
  }
}

CSelectionStore::CSelectionStore(CSelectionStore&& other) noexcept = default;
CSelectionStore& CSelectionStore::operator=(CSelectionStore&& other) noexcept = default;
CSelectionStore::~CSelectionStore() = default;

bool CSelectionStore::IsSelected(const CString& className, const CString& caseName) const {
  if (!m_data) return false;
  if (const bool* pSelect = m_caseSelections.Find(caseKey(className, caseName))) return *pSelect;
  const EDefault* pClassDefault = m_classDefaults.Find(className);
  return (pClassDefault ? *pClassDefault : m_data->eDefault) == All;
}

std::unique_ptr<CSelectionStore::SData> CSelectionStore::Read(const CString& path) {
  try {
    if (!ZoFileSystem::Exists(path) || ZoFileSystem::GetFileSize(path) == 0) return nullptr;
    return readFile(path);
  } catch (...) { return nullptr; }
}

void CSelectionStore::Write(const SData& data, const CString& path) {
  try {
    ZoStreamWriteASCIIFile file(path, 0, 0, 0);
    file << L"<?xml version=\"1.0\" encoding='ISO-8859-1'?>\n";
    file << L"<Config version=\"1.0\">\n";
    file << FormatString(L"\t<Selection default=\"%s\">\n", defaultText(data.eDefault));
    for (const SData::SUnitTestSelection& unitTest : data.unitTests) writeUnitTest(file, unitTest);
    file << L"\t</Selection>\n";
    file << L"</Config>\n";
    file.Close();
  } catch (...) {
    // A selection file that cannot be written is left as far as it came.
    COut::Write(L"Auswahldatei %s konnte nicht geschrieben werden.\n", path);
  }
}

}  // namespace TestSuite
