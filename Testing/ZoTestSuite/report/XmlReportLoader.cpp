// Reading an XML report back into Report::SData.
#include "report/XmlReportLoader.h"

#include <cstdlib>
#include <cstring>

#include "foundation/ZoFileSystem.h"
#include "report/MarkupWriter.h"
#include "services/COut.h"
#include "services/Utils.h"
#include "services/xml/XMLCharacters.h"
#include "services/xml/XMLNode.h"

namespace TestSuite::Report {

namespace {

// The 8-bit text of a node's first child of that name, widened; empty if
// there is none.
CString textOf(const XMLNode& parent, const char* name) { return parent.getChildNode(name, 0).getWideText(0); }

unsigned int uintOf(const XMLNode& parent, const char* name) {
  unsigned int value = 0;
  Utils::GetUInt32(parent.getChildNode(name, 0), value);
  return value;
}

// The number in the first text of `element`; 0 without one.
std::uint64_t uint64In(const XMLNode& element) {
  std::uint64_t value = 0;
  Utils::GetUInt64(element, value);
  return value;
}

std::int64_t int64In(const XMLNode& element) {
  const char* text = element.getText(0);
  return text ? std::strtoll(text, nullptr, 10) : 0;
}

double doubleIn(const XMLNode& element) { return Utils::ParseDouble(element.getText(0)); }

std::uint64_t uint64Of(const XMLNode& parent, const char* name) { return uint64In(parent.getChildNode(name, 0)); }

double doubleOf(const XMLNode& parent, const char* name) { return doubleIn(parent.getChildNode(name, 0)); }

Run::ECaseResult resultOf(const char* word) {
  static const struct {
    const char* sWord;
    Run::ECaseResult eResult;
  } c_words[] = {{"UNKNOWN", Run::eCaseUnknown},     {"OK", Run::eCaseOk},           {"ERROR", Run::eCaseError},
                 {"EXCEPTION", Run::eCaseException}, {"NOINPUT", Run::eCaseNoInput}, {"DIFFERENT", Run::eCaseDifferent},
                 {"CANCELED", Run::eCaseCanceled},   {"TIMEOUT", Run::eCaseTimeout}};
  if (word)
    for (const auto& entry : c_words)
      if (std::strcmp(word, entry.sWord) == 0) return entry.eResult;
  return Run::eCaseUnknown;
}

void readSystemAndRun(const XMLNode& root, SData& data) {
  const XMLNode system = root.getChildNode("SystemInfo", 0);
  data.Processor = textOf(system, "Processor");
  data.GPU = textOf(system, "GPU");
  data.MachineName = textOf(system, "MachineName");
  const XMLNode run = root.getChildNode("RunInfo", 0);
  data.DataDirectory = textOf(run, "DataDirectory");
  data.ExecutionMode = textOf(run, "ExecutionMode");
  data.RunTag = textOf(run, "RunTag");
  data.ThreadCount = uintOf(run, "ThreadCount");
  data.TimeOut = uintOf(run, "TimeOut");
  Utils::GetUInt64Optional(run.getChildNode("ShuffleSeed", 0), data.ShuffleSeed);
}

// The record exists only if its element `presence` has a text.
template <typename TRecord>
std::shared_ptr<TRecord> readFields(const XMLNode& build, const char* presence) {
  if (textOf(build, presence).IsEmpty()) return nullptr;
  auto record = std::make_shared<TRecord>();
  for (const SBuildInfoField<TRecord>& field : BuildInfoFields<TRecord>())
    if (field.szElement) (*record).*field.pField = textOf(build, field.szElement);
  return record;
}

void readBuildInfo(const XMLNode& root, SData& data) {
  const XMLNode build = root.getChildNode("BuildInfo", 0);
  data.BuildConfiguration = textOf(build, "BuildConfiguration");
  data.SvnInfo = readFields<SSvnInfo>(build, "SvnURL");
  data.PscmInfo = readFields<SPscmInfo>(build, "PscmRepository");
}

void readStatistics(const XMLNode& root, SData& data) {
  const XMLNode statistics = root.getChildNode("Statistics", 0);
  data.CasesTotal = uintOf(statistics, "CasesTotal");
  data.Successful = uintOf(statistics, "Successful");
  data.Errors = uintOf(statistics, "Errors");
  data.Failures = uintOf(statistics, "Failures");
  data.Warnings = uintOf(statistics, "Warnings");
  data.MemoryAvg = uint64Of(statistics, "MemoryAvg");
  data.MemoryMax = uint64Of(statistics, "MemoryMax");
  data.MemoryMin = uint64Of(statistics, "MemoryMin");
  data.TimeTotal = doubleOf(statistics, "TimeTotal");
  data.TimeMax = doubleOf(statistics, "TimeMax");
  data.TimeMin = doubleOf(statistics, "TimeMin");
  data.TimeAvg = doubleOf(statistics, "TimeAvg");
  data.DateBegin = textOf(statistics, "DateBegin");
  data.DateEnd = textOf(statistics, "DateEnd");
}

void readClasses(const XMLNode& root, SData& data) {
  const XMLNode classes = root.getChildNode("ClassStatistics", 0);
  data.ClassesTotal = uintOf(classes, "ClassesTotal");
  data.ClassesSuccessful = uintOf(classes, "Successful");
  const int count = classes.getChildCount("Class");
  int position = 0;  // one walk through the children, not a search per class
  for (int i = 0; i < count; ++i) {
    const XMLNode node = classes.getChildNode("Class", &position);
    SClassData row;
    row.Name = node.getWideAttribute("Name");
    row.CasesTotal = uintOf(node, "CasesTotal");
    row.Errors = uintOf(node, "Errors");
    row.Failures = uintOf(node, "Failures");
    row.Warnings = uintOf(node, "Warnings");
    row.ContactName = textOf(node, "ContactName");
    row.ContactEMail = textOf(node, "ContactEMail");
    row.Successful = row.CasesTotal - row.Failures - row.Errors;
    data.Classes.Add(row);
  }
}

// The elements of a case that are read, in the order the writer puts them.
enum ECaseElement { eTime, eMemory, eMemoryDelta, eResult, eCaseElements };
constexpr const char* c_caseElements[eCaseElements] = {"time", "memory", "memorydelta", "result"};

// The first child of each name of c_caseElements, found in one walk over
// the children instead of a search from the first child per name; a name
// without child gets the empty node.
void findCaseElements(const XMLNode& node, XMLNode (&found)[eCaseElements]) {
  bool seen[eCaseElements] = {};
  const int count = node.getChildCount();
  for (int i = 0; i < count; ++i) {
    XMLNode child = node.getChildNode(i);
    for (int e = 0; e < eCaseElements; ++e) {
      if (seen[e] || !XMLNamesEqual(child.getName(), c_caseElements[e])) continue;
      seen[e] = true;
      found[e] = std::move(child);
      break;
    }
  }
}

SCaseData readCase(const XMLNode& node) {
  SCaseData row;
  const char* id = node.getAttribute("id");
  row.Id = id ? static_cast<unsigned int>(std::strtoul(id, nullptr, 10)) : 0;
  row.ClassName = node.getWideAttribute("classname");
  row.CaseName = node.getWideAttribute("name");
  XMLNode elements[eCaseElements];
  findCaseElements(node, elements);
  row.Time = doubleIn(elements[eTime]);
  row.Memory = uint64In(elements[eMemory]);
  row.MemoryDelta = int64In(elements[eMemoryDelta]);
  const XMLNode& result = elements[eResult];
  row.ResultType = resultOf(result.getAttribute("type"));
  const char* warning = result.getAttribute("warning");
  row.Warning = warning && std::strcmp(warning, "true") == 0;
  row.Message = MakeLeakMessage(row.MemoryDelta);
  const int dumps = result.getChildCount("dump");
  int position = 0;
  for (int i = 0; i < dumps; ++i) {
    const XMLNode dump = result.getChildNode("dump", &position);
    const char* type = dump.getAttribute("type");
    // A run's record holds its dumps escaped; so does a loaded one, so
    // that writing it again gives the same file and case output never
    // becomes markup.
    row.Dumps.Add(SDump{!(type && std::strcmp(type, "info") == 0), Utils::CMarkupWriter::Clean(dump.getWideText(0))});
  }
  return row;
}

}  // namespace

bool LoadReportDataFromXMLFile(const CString& path, SData& data) {
  data = SData();
  if (!ZoFileSystem::Exists(path)) return false;
  try {
    XMLResults results;
    const XMLNode root = XMLNode::parseFile(path, "testsuite", &results);
    if (results.error != eXMLErrorNone) throw CString(L"XML-Syntax Fehler");
    readSystemAndRun(root, data);
    readBuildInfo(root, data);
    readStatistics(root, data);
    readClasses(root, data);
    // One walk over the children, in document order: looking each case up
    // by its index would start from the first child every time, and
    // counting the cases first would take a second walk.
    const int count = root.getChildCount();
    data.Cases.Reserve(static_cast<unsigned int>(count));
    for (int i = 0; i < count; ++i) {
      const XMLNode child = root.getChildNode(i);
      if (XMLNamesEqual(child.getName(), "testcase")) data.Cases.Add(readCase(child));
    }
    return true;
  } catch (const CString& message) {
    COut::Write(L"Fehler in Config-File: %s\n", message);
    return false;
  }
}

}  // namespace TestSuite::Report
