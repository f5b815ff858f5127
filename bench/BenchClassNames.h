// BenchClassNames: one test class registered under many names for the
// life of a benchmark, so that a data tree can hold many distinct classes
// without a class compiled for each.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/XbRTTI.h"
#include "foundation/ZoUnitTest.h"

template <typename TClass>
class CBenchClassNames {
 public:
  // Registers TClass under nameOf(0) ... nameOf(count - 1).
  template <typename FnNameOf>
  CBenchClassNames(unsigned int count, FnNameOf nameOf) {
    m_names.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
      m_names.push_back(nameOf(i).Str());
      m_records.push_back(std::make_unique<XbRTTI>(m_names.back().c_str(), &ZoUnitTest::RTTI, &create,
                                                   XbRTTI::InstanceTestOf<TClass>()));
      m_registrars.push_back(std::make_unique<XbRTTIRegistrar>(*m_records.back()));
    }
  }

 private:
  static std::unique_ptr<IObject> create() { return std::unique_ptr<IObject>(new TClass()); }

  std::vector<std::wstring> m_names;  // the records point into these
  std::vector<std::unique_ptr<XbRTTI>> m_records;
  std::vector<std::unique_ptr<XbRTTIRegistrar>> m_registrars;
};
