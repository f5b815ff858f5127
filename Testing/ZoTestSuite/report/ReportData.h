// Report::SData: a finished test run as one flat record of texts and numbers,
// the form in which every report is written, loaded back, compared and
// archived; with the result vocabulary of the reports and the rules by which
// a run's raw results become report data.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "ZoTestSuite.h"
#include "services/BuildInformation.h"

namespace TestSuite::Report {

// One output line of a case.
struct SDump {
  bool IsError = false;  // an error line; else an info line
  CString Text;          // already escaped for markup
};

struct SCaseData {
  unsigned int Id = 0;  // row of the run's result table; gaps where cancelled rows were left out
  CString ClassName;
  CString CaseName;
  double Time = 0.0;  // seconds
  std::uint64_t Memory = 0;
  std::int64_t MemoryDelta = 0;  // bytes leaked
  Run::ECaseResult ResultType = Run::eCaseOk;
  CString Message;  // the leak message, or empty
  bool Warning = false;
  XbArray<SDump> Dumps;
};

struct SClassData {
  CString Name;
  unsigned int CasesTotal = 0;
  unsigned int Successful = 0;  // CasesTotal - Failures - Errors
  unsigned int Errors = 0;      // cases in the error group
  unsigned int Failures = 0;    // cases in the failure group
  unsigned int Warnings = 0;
  CString ContactName;  // of the class's first contact
  CString ContactEMail;
};

struct SData {
  CString BuildConfiguration;
  std::shared_ptr<SSvnInfo> SvnInfo;    // may be empty
  std::shared_ptr<SPscmInfo> PscmInfo;  // may be empty
  CString Processor;
  CString GPU;
  CString MachineName;
  CString DataDirectory;
  CString ExecutionMode;  // "External Isolated", "External" or "Internal"
  unsigned int ThreadCount = 0;
  unsigned int TimeOut = 0;  // seconds; 0xFFFFFFFF: none
  CString RunTag;
  std::optional<std::uint64_t> ShuffleSeed;  // the seed of a run in shuffled order; none for the table's order
  unsigned int ClassesTotal = 0;             // classes with at least one reported case
  unsigned int ClassesSuccessful = 0;        // of these, the ones whose every case is OK
  unsigned int ClassesNotClean = 0;          // ClassesTotal minus the successful ones without warning; not in files
  unsigned int CasesTotal = 0;
  unsigned int Successful = 0;
  unsigned int Failures = 0;  // failure group: results 1 to 4
  unsigned int Errors = 0;    // error group: results 5 and above
  unsigned int Warnings = 0;
  CString DateBegin;  // "Y-m-d H:i:s", local time
  CString DateEnd;
  double TimeTotal = 0.0;
  double TimeAvg = 0.0;
  double TimeMax = 0.0;
  double TimeMin = 0.0;
  std::uint64_t MemoryAvg = 0;
  std::uint64_t MemoryMax = 0;
  std::uint64_t MemoryMin = 0;
  XbArray<SClassData> Classes;  // every class of the run, also one without a reported case
  XbArray<SCaseData> Cases;     // every reported case; cancelled ones are left out
};

// The three groups into which reports sort the results.
enum EResultGroup { eGroupOk = 0, eGroupFailure = 1, eGroupError = 2 };

// 0 ok; 1 to 4 failure; every other number error.
EResultGroup GetResultGroup(Run::ECaseResult result);
// The word of a result in XML: "OK", "ERROR", "EXCEPTION", "NOINPUT",
// "DIFFERENT", "UNKNOWN", "CANCELED", "TIMEOUT"; "UNKNOWN" for 6 and for
// any number outside 0 to 8.
CString GetResultWord(Run::ECaseResult result);
// The German label of a result for people; "Unbekannt" for 6 and for any
// number outside 0 to 8.
CString GetResultLabel(Run::ECaseResult result);
// "Speicherleck von %d Bytes detektiert." for a delta other than 0, else
// empty.
CString MakeLeakMessage(std::int64_t memoryDelta);

// Fills `data`, which arrives default-constructed, from a finished run:
// build and machine information, the setup, the statistics, one row per
// class and one per case that was not cancelled.
void BuildReportData(SData& data, const SSetup& setup, const XbArray<SUnitTest>& unitTests,
                     const XbArray<SCaseResult>& cases, const SRunStatistics& statistics);

// Cuts a case's output into report lines. The output is split at "\n" with
// CString::Tokenize, so empty lines vanish, and a last line without "\n" is
// dropped. At most `maxLines` lines reach `sink`; a longer output ends with
// one more line "..." (info). A line's kind comes from its tag: behind
// "INFO:  " (two blanks) an info line, behind "ERROR: " an error line; the
// tag and what precedes it are cut off. An untagged line takes the kind of
// the line before it; the first counts as an error. Every text reaches the
// sink escaped by CMarkupWriter::Clean.
void SplitCaseMessages(const CString& output, unsigned int maxLines,
                       const std::function<void(const CString&, bool)>& sink);

}  // namespace TestSuite::Report
