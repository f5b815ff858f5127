// Reading an XML report back into Report::SData.
#include "report/XmlReportLoader.h"

#include <cstdlib>
#include <cstring>

#include "foundation/ZoFileSystem.h"
#include "report/MarkupWriter.h"
#include "services/COut.h"
#include "services/Utils.h"
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

std::uint64_t uint64Of(const XMLNode& parent, const char* name) {
  std::uint64_t value = 0;
  Utils::GetUInt64(parent.getChildNode(name, 0), value);
  return value;
}

std::int64_t int64Of(const XMLNode& parent, const char* name) {
  const char* text = parent.getChildNode(name, 0).getText(0);
  return text ? std::strtoll(text, nullptr, 10) : 0;
}

double doubleOf(const XMLNode& parent, const char* name) {
  const char* text = parent.getChildNode(name, 0).getText(0);
  return Utils::ParseDouble(text);
}

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

SCaseData readCase(const XMLNode& node) {
  SCaseData row;
  const char* id = node.getAttribute("id");
  row.Id = id ? static_cast<unsigned int>(std::strtoul(id, nullptr, 10)) : 0;
  row.ClassName = node.getWideAttribute("classname");
  row.CaseName = node.getWideAttribute("name");
  row.Time = doubleOf(node, "time");
  row.Memory = uint64Of(node, "memory");
  row.MemoryDelta = int64Of(node, "memorydelta");
  const XMLNode result = node.getChildNode("result", 0);
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
    // by its index would start from the first child every time.
    const int count = root.getChildCount("testcase");
    int position = 0;
    for (int i = 0; i < count; ++i) data.Cases.Add(readCase(root.getChildNode("testcase", &position)));
    return true;
  } catch (const CString& message) {
    COut::Write(L"Fehler in Config-File: %s\n", message);
    return false;
  }
}

}  // namespace TestSuite::Report
