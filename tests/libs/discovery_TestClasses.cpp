// discovery_TestClasses: the test library of the discovery tests. Its
// classes take their subtests from their data directory, so that each test
// builds the tree it needs, and a few of them fail on purpose at the steps
// where discovery must cope with a broken class.
#include <fstream>
#include <stdexcept>
#include <string>

#include "SystemPath.h"
#include "ZoUnitTest.h"

// One subtest per line of "cases.txt" (UTF-8) in the data directory; no file,
// no subtests. A line "!throw" makes InitSubtests throw.
class DiscoveryListedCases : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(DiscoveryListedCases)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override {
    std::ifstream file(PathToSystem(GetDataDirectory() + L"cases.txt"), std::ios::binary);
    std::string line;
    while (std::getline(file, line)) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (line.empty()) continue;
      if (line == "!throw") throw std::runtime_error("DiscoveryListedCases: InitSubtests fails on purpose");
      names.Add(CString::FromUtf8(line));
    }
  }
  EResult OnRunSubtest(unsigned int) override { return eSuccess; }
};

// Registered, derived from ZoUnitTest, but abstract: the registry has no
// creation function for it.
class DiscoveryAbstractTest : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(DiscoveryAbstractTest)

 protected:
  void OnInitSubtests(XbArray<CString>& names) override { names.Add(L"never"); }
};

// Registered and creatable, but no test class.
class DiscoveryPlainObject : public IObject {
  XB_DECLARE_DYNCREATE(DiscoveryPlainObject)
};

XB_IMPLEMENT_DYNCREATE(DiscoveryListedCases, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(DiscoveryAbstractTest, ZoUnitTest);
XB_IMPLEMENT_DYNCREATE(DiscoveryPlainObject, IObject);

namespace {

std::unique_ptr<IObject> createListedCases() { return std::unique_ptr<IObject>(new DiscoveryListedCases()); }

std::unique_ptr<IObject> createThrowing() {
  throw std::runtime_error("DiscoveryThrowingFactory: creation fails on purpose");
}

// Claims to be a test class, yet makes an object that is none.
std::unique_ptr<IObject> createPlainObject() { return std::unique_ptr<IObject>(new DiscoveryPlainObject()); }

constexpr XbRTTI::FnIsInstance isListedCases = XbRTTI::InstanceTestOf<DiscoveryListedCases>();

// Further names of DiscoveryListedCases: class names that are no C++
// identifiers (blanks, umlauts, characters beyond the 16-bit range) and
// names that differ only in case, for the order of the result.
const XbRTTI c_aliases[] = {
    {L"Alpha", &ZoUnitTest::RTTI, createListedCases, isListedCases},
    {L"alpha", &ZoUnitTest::RTTI, createListedCases, isListedCases},
    {L"Beta", &ZoUnitTest::RTTI, createListedCases, isListedCases},
    {L"Zulu", &ZoUnitTest::RTTI, createListedCases, isListedCases},
    {L"Größe Prüfung", &ZoUnitTest::RTTI, createListedCases, isListedCases},
    {L"\U0001F600 Smiley", &ZoUnitTest::RTTI, createListedCases, isListedCases},
    {L"\uFB00 Ligatur", &ZoUnitTest::RTTI, createListedCases, isListedCases},
};
const XbRTTIRegistrar s_aliasRegistrars[] = {
    XbRTTIRegistrar(c_aliases[0]), XbRTTIRegistrar(c_aliases[1]), XbRTTIRegistrar(c_aliases[2]),
    XbRTTIRegistrar(c_aliases[3]), XbRTTIRegistrar(c_aliases[4]), XbRTTIRegistrar(c_aliases[5]),
    XbRTTIRegistrar(c_aliases[6]),
};

const XbRTTI c_throwingFactory(L"DiscoveryThrowingFactory", &ZoUnitTest::RTTI, createThrowing, isListedCases);
const XbRTTIRegistrar s_throwingFactoryRegistrar(c_throwingFactory);

const XbRTTI c_wrongObject(L"DiscoveryWrongObject", &ZoUnitTest::RTTI, createPlainObject, isListedCases);
const XbRTTIRegistrar s_wrongObjectRegistrar(c_wrongObject);

}  // namespace
