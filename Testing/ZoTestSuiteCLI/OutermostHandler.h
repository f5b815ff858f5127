// OutermostHandler: the one place where the front end meets an exception
// that left the library, turned into one plain line and exit status 3.
#pragma once

#include <exception>
#include <functional>
#include <string>

namespace TestSuite::CLI {

// The line that names `error`, without a line end: a thrown wide text
// (CString or const wchar_t*) as it stands, a language exception such as a
// file-system error by its text, an XbException by the function that gave
// up. Other types are named as unknown.
std::string DescribeEscapedException(const std::exception_ptr& error);

// Runs `body` and gives its exit status. An exception that leaves it is
// printed on standard error as "ZoTestSuiteCLI: " and its description, and
// gives sc_iExitInternal; nothing is rethrown.
int RunWithOutermostHandler(const std::function<int()>& body);

}  // namespace TestSuite::CLI
