// Wiring::CContainer: the process's dependency container, which holds the
// parsed XML configuration through which the foundation libraries wire
// their parts together.
//
// A configuration that cannot be read or does not parse leaves the
// container empty. A container made current is the one the foundation
// libraries find through GetCurrent, until it is destroyed or another one
// is made current.
#pragma once

#include "services/xml/XMLNode.h"

namespace Wiring {

class CContainer {
 public:
  // From the XML file at `path`.
  CContainer(const wchar_t* path, bool bMakeCurrent);
  // From XML text in memory (UTF-8 or 8-bit).
  CContainer(const char* xmlText, bool bMakeCurrent);
  ~CContainer();
  CContainer(const CContainer&) = delete;
  CContainer& operator=(const CContainer&) = delete;

  bool IsEmpty() const { return m_configuration.isEmpty(); }
  // The parsed document; the empty node when the container is empty.
  const TestSuite::XMLNode& GetConfiguration() const { return m_configuration; }

  // The current container; null if there is none. An empty container never
  // becomes current.
  static CContainer* GetCurrent();

 private:
  void adopt(const TestSuite::XMLNode& document, const TestSuite::XMLResults& results, bool bMakeCurrent);

  TestSuite::XMLNode m_configuration;
};

}  // namespace Wiring
