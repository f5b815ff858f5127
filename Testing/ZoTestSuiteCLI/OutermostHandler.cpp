// The front end's outermost exception handler.
#include "OutermostHandler.h"

#include <cstdio>

#include "FrontEnd.h"
#include "foundation/CString.h"
#include "foundation/XbException.h"

namespace TestSuite::CLI {

std::string DescribeEscapedException(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const CString& text) { return "Fehler: " + text.ToUtf8(); } catch (const wchar_t* text) {
    return "Fehler: " + CString(text).ToUtf8();
  } catch (const XbException& failure) {
    // The only text of a harness failure is the function that gave up.
    return std::string("Fehler in ") + failure.what();
  } catch (const std::exception& failure) { return std::string("Fehler: ") + failure.what(); } catch (...) {
    return "Fehler unbekannter Art";
  }
}

int RunWithOutermostHandler(const std::function<int()>& body) {
  try {
    return body();
  } catch (...) {
    const std::string line = DescribeEscapedException(std::current_exception());
    std::fprintf(stderr, "ZoTestSuiteCLI: %s\n", line.c_str());
    std::fflush(stderr);
  }
  return sc_iExitInternal;
}

}  // namespace TestSuite::CLI
