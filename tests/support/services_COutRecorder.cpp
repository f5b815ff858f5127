// The process-wide recording sink behind COutRecorder.
#include "services_COutRecorder.h"

#include <stdexcept>

#include "services/COut.h"

namespace {

class CRecordingSink : public TestSuite::COut::ZoCustomOut {
 public:
  void Output(const TestSuite::COut& out) override {
    std::lock_guard<std::mutex> guard(m_mutex);
    if (!m_bActive) return;
    m_messages.push_back({out.GetText(), out.IsBold(), out.IsUnderlined(), out.HasColor(), out.GetColor()});
  }
  void SetActive(bool active) {
    std::lock_guard<std::mutex> guard(m_mutex);
    if (active && m_bActive) throw std::logic_error("COutRecorder: one recorder at a time");
    m_bActive = active;
    m_messages.clear();
  }
  std::vector<COutRecorder::SMessage> Messages() const {
    std::lock_guard<std::mutex> guard(m_mutex);
    return m_messages;
  }
  void Clear() {
    std::lock_guard<std::mutex> guard(m_mutex);
    m_messages.clear();
  }

 private:
  mutable std::mutex m_mutex;
  bool m_bActive = false;
  std::vector<COutRecorder::SMessage> m_messages;
};

// Never destroyed: COut keeps the pointer for the life of the process.
CRecordingSink& recordingSink() {
  static CRecordingSink* s_sink = [] {
    auto* sink = new CRecordingSink;
    TestSuite::COut::AddCustomOut(sink);
    return sink;
  }();
  return *s_sink;
}

}  // namespace

COutRecorder::COutRecorder(bool consoleOff) {
  recordingSink().SetActive(true);
  if (consoleOff) TestSuite::COut::SetConsoleOut(false);
}

COutRecorder::~COutRecorder() {
  recordingSink().SetActive(false);
  TestSuite::COut::SetConsoleOut(true);
}

std::vector<COutRecorder::SMessage> COutRecorder::Messages() const { return recordingSink().Messages(); }

CString COutRecorder::Text() const {
  CString text;
  for (const COutRecorder::SMessage& message : recordingSink().Messages()) text += message.sText;
  return text;
}

void COutRecorder::Clear() { recordingSink().Clear(); }
