// Report::SData from a finished run, and the result vocabulary of the reports.
#include "report/ReportData.h"

#include "foundation/platform/Machine.h"
#include "report/MarkupWriter.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite::Report {

namespace {

struct SResultNames {
  const wchar_t* sWord;
  const wchar_t* sLabel;
};

// Indexed by Run::ECaseResult.
const SResultNames c_resultNames[Run::sc_uiResultCount] = {
    {L"OK", L"Ok"},
    {L"ERROR", L"Fehler"},
    {L"EXCEPTION", L"Exception"},
    {L"NOINPUT", L"Fehlende Datei"},
    {L"DIFFERENT", L"Unterschiede zur Referenz-Ausführung"},
    {L"UNKNOWN", L"Unvollständige Ausführung"},
    {L"UNKNOWN", L"Unbekannt"},
    {L"CANCELED", L"Externer Unterbruch des Ausführung"},
    {L"TIMEOUT", L"Zeitlimit überschritten"},
};

const SResultNames c_unknownResult = {L"UNKNOWN", L"Unbekannt"};

const SResultNames& namesOf(Run::ECaseResult result) {
  const auto index = static_cast<unsigned int>(result);
  return index < Run::sc_uiResultCount ? c_resultNames[index] : c_unknownResult;
}

// A tally sorted into the three groups; `uiSum` is the sum of all nine counters.
struct SBuckets {
  unsigned int uiOk = 0;
  unsigned int uiFailure = 0;
  unsigned int uiError = 0;
  unsigned int uiSum = 0;
};

SBuckets tally(const SCaseCounters& counters) {
  SBuckets buckets;
  for (unsigned int i = 0; i < Run::sc_uiResultCount; ++i) {
    const unsigned int count = counters.uiResults[i];
    const EResultGroup group = GetResultGroup(static_cast<Run::ECaseResult>(i));
    (group == eGroupOk ? buckets.uiOk : group == eGroupFailure ? buckets.uiFailure : buckets.uiError) += count;
    buckets.uiSum += count;
  }
  return buckets;
}

CString describeProcessor() {
  using namespace ZoPlatform::Machine;
  return FormatString(L"Model: %s, Cores: %d, Speed %.3f GHz, Memory %.1f GB", CString::FromUtf8(GetCPUModelName()),
                      GetLogicalProcessorCount(), GetCPUSpeedMHz() / 1000.0,
                      static_cast<double>(GetTotalPhysicalMemory()) * 9.313225746154785e-10);
}

CString executionMode(const SRunOptions& options) {
  if (!options.bExternal) return L"Internal";
  return options.bIsolated ? L"External Isolated" : L"External";
}

void fillMachineAndSetup(SData& data, const SSetup& setup) {
  data.BuildConfiguration = Utils::GetBuildConfiguration();
  data.SvnInfo = GetSvnInfo();
  data.PscmInfo = GetPscmInfo();
  data.Processor = describeProcessor();
  data.GPU = CString(ZoPlatform::Machine::GetGPUName());
  data.MachineName = CString(ZoPlatform::Machine::GetMachineName());
  data.DataDirectory = setup.sDataDir;
  data.ExecutionMode = executionMode(setup.run);
  data.ThreadCount = setup.run.bParallel ? setup.run.uiThreadCount : 1;
  data.TimeOut = setup.run.uiTimeOutSec;
  data.RunTag = setup.sRunTag;
  data.ShuffleSeed = setup.oShuffleSeed;
}

void fillStatistics(SData& data, const SRunStatistics& statistics) {
  const SBuckets total = tally(statistics.total);
  data.ClassesTotal = statistics.uiClassesRun;
  data.ClassesSuccessful = statistics.uiClassesOk;
  data.ClassesNotClean = statistics.uiClassesRun - statistics.uiClassesClean;
  data.CasesTotal = statistics.total.uiTotal;
  data.Failures = total.uiFailure;
  data.Errors = total.uiError;
  data.Successful = data.CasesTotal - data.Failures - data.Errors;
  data.Warnings = statistics.total.uiWarnings;
  data.DateBegin = statistics.dateBegin.ToString(L"Y-m-d H:i:s", true);
  data.DateEnd = statistics.dateEnd.ToString(L"Y-m-d H:i:s", true);
  data.TimeTotal = statistics.dTimeTotal;
  data.TimeAvg = data.CasesTotal == 0 ? 0.0 : statistics.dTimeSum / data.CasesTotal;
  data.TimeMax = statistics.dTimeMax;
  data.TimeMin = statistics.dTimeMin;
  data.MemoryAvg = data.CasesTotal == 0 ? 0 : statistics.uiMemorySum / data.CasesTotal;
  data.MemoryMax = statistics.uiMemoryMax;
  data.MemoryMin = statistics.uiMemoryMin;
}

SClassData makeClassData(const SUnitTest& unitTest, const SCaseCounters& counters) {
  const SBuckets buckets = tally(counters);
  SClassData row;
  row.Name = unitTest.Name;
  row.CasesTotal = buckets.uiSum;
  row.Errors = buckets.uiError;
  row.Failures = buckets.uiFailure;
  row.Successful = row.CasesTotal - row.Failures - row.Errors;
  row.Warnings = counters.uiWarnings;
  if (!unitTest.Contacts.IsEmpty()) {
    row.ContactName = unitTest.Contacts[0].Name;
    row.ContactEMail = unitTest.Contacts[0].Email;
  }
  return row;
}

// The case's own "MessageReportMax" parameter, else the run's limit.
unsigned int messageLimit(const SSetup& setup, const SUnitTest::SCase& testCase) {
  const XbVariant* value = testCase.Params.Find(CString(L"MessageReportMax"));
  if (value && value->IsUInt32()) return value->GetUInt32();
  if (value && value->GetType() == XbVariant::EType::Int32) return static_cast<unsigned int>(value->GetInt32());
  if (value && value->GetType() == XbVariant::EType::UInt64) return static_cast<unsigned int>(value->GetUInt64());
  return static_cast<unsigned int>(setup.iMessageReportMax);
}

SCaseData makeCaseData(unsigned int id, const SCaseResult& row, const SUnitTest& unitTest,
                       const SUnitTest::SCase& testCase, unsigned int maxLines) {
  SCaseData data;
  data.Id = id;
  data.ClassName = unitTest.Name;
  data.CaseName = testCase.Name;
  data.Time = row.dTime;
  data.Memory = row.uiMemoryPeak;
  data.MemoryDelta = row.iMemoryDelta;
  data.ResultType = row.eResult;
  data.Warning = row.bWarning;
  data.Message = MakeLeakMessage(data.MemoryDelta);
  SplitCaseMessages(row.sOutput, maxLines, [&data](const CString& text, bool isError) {
    data.Dumps.Add(SDump{isError, text});
  });
  return data;
}

}  // namespace

EResultGroup GetResultGroup(Run::ECaseResult result) {
  if (result == Run::eCaseOk) return eGroupOk;
  if (result >= Run::eCaseError && result <= Run::eCaseDifferent) return eGroupFailure;
  return eGroupError;
}

CString GetResultWord(Run::ECaseResult result) { return namesOf(result).sWord; }

CString GetResultLabel(Run::ECaseResult result) { return namesOf(result).sLabel; }

CString MakeLeakMessage(std::int64_t memoryDelta) {
  if (memoryDelta == 0) return CString();
  return FormatString(L"Speicherleck von %d Bytes detektiert.", memoryDelta);
}

void BuildReportData(SData& data, const SSetup& setup, const XbArray<SUnitTest>& unitTests,
                     const XbArray<SCaseResult>& cases, const SRunStatistics& statistics) {
  fillMachineAndSetup(data, setup);
  fillStatistics(data, statistics);
  const SCaseCounters none;
  for (unsigned int i = 0; i < unitTests.GetCount(); ++i)
    data.Classes.Add(makeClassData(unitTests[i], i < statistics.classes.GetCount() ? statistics.classes[i] : none));
  for (unsigned int i = 0; i < cases.GetCount(); ++i) {
    const SCaseResult& row = cases[i];
    if (row.eResult == Run::eCaseCanceled) continue;
    const SUnitTest& unitTest = unitTests.GetAt(row.uiClassIndex);
    const SUnitTest::SCase& testCase = unitTest.Cases.GetAt(row.uiCaseIndex);
    data.Cases.Add(makeCaseData(i, row, unitTest, testCase, messageLimit(setup, testCase)));
  }
}

void SplitCaseMessages(const CString& output, unsigned int maxLines,
                       const std::function<void(const CString&, bool)>& sink) {
  bool isError = true;
  unsigned int count = 0;
  int position = 0;
  CString line = output.Tokenize(L"\n", position);
  while (position >= 0 && position <= output.GetLength()) {
    if (count >= maxLines) {
      sink(CString(L"..."), false);
      return;
    }
    if (const int info = line.Find(L"INFO:  "); info >= 0) {
      line = line.Mid(info + 7);
      isError = false;
    } else if (const int error = line.Find(L"ERROR: "); error >= 0) {
      line = line.Mid(error + 7);
      isError = true;
    }
    sink(Utils::CMarkupWriter::Clean(line), isError);
    ++count;
    line = output.Tokenize(L"\n", position);
  }
}

}  // namespace TestSuite::Report
