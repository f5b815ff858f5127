// ZoUnitTest: the base class of every test class, and the one header that
// a test library includes.
//
// A test class stands for one data directory, which carries the class's name.
// It lists its subtests for that directory in OnInitSubtests and runs one of
// them in OnRunSubtest. The system creates a new instance for every use
// (discovery, the run of one subtest, one recreation). For a run it calls,
// in this order: SetMessageStream, SetDataDirectory, InitSubtests, the
// IDebugging options if the class has that interface, WarmUp,
// GetSubtestCount/GetSubtestName to find the subtest by its name,
// RunUnitTest, and finally the destructor. Discovery sets no stream.
//
// Instances of one class may run at the same time on different threads, so
// a class keeps no unguarded shared state.
//
// This header also gives ZoUnitTestFileBased, IDebugging, IUnitTestRecreate,
// XbRTTI with the registration macros, CString and XbArray.
#pragma once

#include "CString.h"
#include "IDebugging.h"
#include "IObject.h"
#include "IUnitTestRecreate.h"
#include "XbArray.h"
#include "XbRTTI.h"
#include "XbStream.h"

class ZoUnitTest : public IObject {
  XB_DECLARE_DYNCREATE(ZoUnitTest)

  // The result of one subtest.
  enum EResult {
    eDataError = 0,        // the test data could not be loaded
    eSuccess = 1,          // the subtest passed
    eFailure = 2,          // the subtest failed
    eException = 3,        // an exception was caught inside the test
    eDifferentOutput = 4,  // the output differs from the reference execution
  };

  ZoUnitTest();
  ~ZoUnitTest() override;

 protected:
  // Author's hook: appends the names of the subtests found in the data
  // directory to `names`, which is empty on entry. Must give the same
  // names, in the same order, every time for the same data. A subtest's
  // name is its identity: when two subtests share a name, the first is the
  // one that runs.
  virtual void OnInitSubtests(XbArray<CString>& names) = 0;
  // Author's hook: runs subtest `index` (below GetSubtestCount()).
  virtual EResult OnRunSubtest(unsigned int index) = 0;

 public:
  // Called once before the measured run of a subtest, with the heap tracking
  // suspended: what the class allocates once and keeps (tables, caches)
  // belongs here. The result is ignored by the system.
  virtual bool WarmUp();

  ZoUnitTest(const ZoUnitTest&) = delete;
  ZoUnitTest& operator=(const ZoUnitTest&) = delete;

  // The full path of the class's data directory, ending in '/'.
  void SetDataDirectory(const CString& directory);
  // Empties the subtest list and builds it again through OnInitSubtests.
  void InitSubtests();
  unsigned int GetSubtestCount() const;
  // An index beyond the list gives an empty text.
  CString GetSubtestName(unsigned int index) const;
  // The whole list, as InitSubtests left it.
  const XbArray<CString>& GetSubtestNames() const { return m_subtestNames; }
  // The stream for the test's output. It belongs to the caller and outlives
  // the run of the subtest; no stream is set at discovery.
  void SetMessageStream(XbStreamWriteASCIIT<CString>& stream) const;
  // Runs one subtest through OnRunSubtest and gives its result as it is,
  // also a value outside EResult.
  EResult RunUnitTest(unsigned int index);

 protected:
  const CString& GetDataDirectory() const { return m_sDataDirectory; }
  // Null where no stream has been set.
  XbStreamWriteASCIIT<CString>* GetMessageStream() const { return m_pMessageStream; }

  // One line "INFO:  <text>\n" to the message stream; nothing without one.
  template <typename... Args>
  void Info(const wchar_t* format, const Args&... args) const {
    if (m_pMessageStream) writeLine(L"INFO:  ", FormatString(format, args...));
  }
  // One line "ERROR: <text>\n" to the message stream; nothing without one.
  template <typename... Args>
  void Error(const wchar_t* format, const Args&... args) const {
    if (m_pMessageStream) writeLine(L"ERROR: ", FormatString(format, args...));
  }

 private:
  void writeLine(const wchar_t* tag, const CString& text) const;

  CString m_sDataDirectory;
  XbArray<CString> m_subtestNames;
  mutable XbStreamWriteASCIIT<CString>* m_pMessageStream = nullptr;
};

// The file-based kind comes with this header; it needs ZoUnitTest complete.
#include "ZoUnitTestFileBased.h"
