// Wiring::CContainer: the process's dependency container.
#include "core/WiringContainer.h"

#include <mutex>

namespace Wiring {
namespace {

std::mutex s_currentMutex;
CContainer* s_pCurrent = nullptr;

}  // namespace

CContainer::CContainer(const wchar_t* path, bool bMakeCurrent) {
  TestSuite::XMLResults results;
  const TestSuite::XMLNode document =
      path ? TestSuite::XMLNode::parseFile(path, nullptr, &results) : TestSuite::XMLNode();
  adopt(document, results, bMakeCurrent);
}

CContainer::CContainer(const char* xmlText, bool bMakeCurrent) {
  TestSuite::XMLResults results;
  const TestSuite::XMLNode document =
      xmlText ? TestSuite::XMLNode::parseString(xmlText, nullptr, &results) : TestSuite::XMLNode();
  adopt(document, results, bMakeCurrent);
}

CContainer::~CContainer() {
  std::lock_guard lock(s_currentMutex);
  if (s_pCurrent == this) s_pCurrent = nullptr;
}

CContainer* CContainer::GetCurrent() {
  std::lock_guard lock(s_currentMutex);
  return s_pCurrent;
}

void CContainer::adopt(const TestSuite::XMLNode& document, const TestSuite::XMLResults& results, bool bMakeCurrent) {
  if (results.error != TestSuite::eXMLErrorNone) return;
  m_configuration = document;
  if (bMakeCurrent && !IsEmpty()) {
    std::lock_guard lock(s_currentMutex);
    s_pCurrent = this;
  }
}

}  // namespace Wiring
