// Xmllint: the checks of written XML files by the xmllint program, well
// formed and, for JUnit files, valid against the schema in tests/report/data.
#pragma once

#include <string>

namespace TestSupport {

// Runs "xmllint --noout" with `arguments` (shell words, quoted by the
// caller); its exit code, and its messages into `messages`.
int RunXmllint(const std::string& arguments, std::string& messages);

// Whether the XML file at `path` is well formed: xmllint's exit code, 0 if so.
int CheckWellFormed(const std::string& path, std::string& messages);

// Validates the JUnit file at `path` against the JUnit schema: xmllint's
// exit code, 0 if it is valid.
int ValidateJUnitFile(const std::string& path, std::string& messages);

}  // namespace TestSupport
