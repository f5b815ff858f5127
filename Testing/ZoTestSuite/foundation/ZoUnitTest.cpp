// ZoUnitTest: the base class of every test class.
#include "ZoUnitTest.h"

XB_IMPLEMENT_DYNCREATE(ZoUnitTest, IObject);

ZoUnitTest::ZoUnitTest() = default;

ZoUnitTest::~ZoUnitTest() = default;

bool ZoUnitTest::WarmUp() { return true; }

void ZoUnitTest::SetDataDirectory(const CString& directory) { m_sDataDirectory = directory; }

void ZoUnitTest::InitSubtests() {
  m_subtestNames.RemoveAll();
  OnInitSubtests(m_subtestNames);
}

unsigned int ZoUnitTest::GetSubtestCount() const { return m_subtestNames.GetCount(); }

CString ZoUnitTest::GetSubtestName(unsigned int index) const {
  return index < m_subtestNames.GetCount() ? m_subtestNames[index] : CString();
}

void ZoUnitTest::SetMessageStream(XbStreamWriteASCIIT<CString>& stream) const { m_pMessageStream = &stream; }

ZoUnitTest::EResult ZoUnitTest::RunUnitTest(unsigned int index) { return OnRunSubtest(index); }

void ZoUnitTest::writeLine(const wchar_t* tag, const CString& text) const {
  CString line(tag);
  line += text;
  line += L'\n';
  *m_pMessageStream << line;
}
