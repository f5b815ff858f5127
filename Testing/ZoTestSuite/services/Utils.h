// Utils: the small stateless functions that the subsystems share: path
// texts, a process runner with a time-out, the per-case debug output
// directory, wildcards as regular expressions, typed values from XML nodes,
// and facts about the build and the machine.
//
// All are free functions, callable from any thread; none prints. The path
// separator is '/': where a name speaks of a backslash, it means '/'.
#pragma once

#include <cstdint>
#include <optional>
#include <regex>

#include "foundation/CString.h"
#include "foundation/XbDateTime.h"
#include "services/xml/XMLNode.h"

namespace TestSuite::Utils {

// --- Paths -----------------------------------------------------------------

// Appends '/' unless the path is empty or already ends in '/'. A trailing
// '\' is no separator here.
void AddBackslash(CString& path);
// Removes every trailing '/'; a path of separators alone becomes empty.
void RemoveBackslashes(CString& path);
// True if the path exists, else whether one directory could be made there.
// Makes one level only: a missing parent gives false.
bool AssertDirectory(const CString& path);

// Splits at the last separator in front of the leaf; '/' and '\' count
// alike. The directory keeps its final separator and is empty when there is
// none; trailing separators belong to neither half. "a/b/" gives "a/" and
// "b"; "abc" gives "" and "abc"; "//" gives "" and "".
void SplitPathLeaf(const CString& path, CString& directory, CString& leaf);
CString GetPathLeaf(const CString& path);
CString GetPathDirectory(const CString& path);

// The directory for a case's debug output, as text (nothing is created):
// debug output root, "Y-m-d H.i.s" of `dateTime` in local time, the class
// name, the case name with each of \ / : * ? " < > | made "-", and, when
// `repeatCount` is above 1, the repeat index as three digits; each level
// ends in '/'.
CString MakeCaseOutputDirectory(const CString& className, const CString& caseName, const XbDateTime& dateTime,
                                std::uint32_t repeatIndex, std::uint32_t repeatCount);

// --- Processes ---------------------------------------------------------------

// Runs `executable` + " " + `arguments` in `workingDirectory` (empty: the
// caller's) with the caller's standard streams, and waits at most
// `timeoutSeconds` (0: the child is killed at once). The command line is
// split into words at blanks outside double quotes, the quotes removed;
// callers quote for themselves. Returns empty text if the child ended in
// time, whatever its exit code; otherwise a German warning for the caller
// to print: the child could not be started, or it was killed at the limit.
CString RunProcess(const CString& executable, const CString& arguments, const CString& workingDirectory,
                   std::uint32_t timeoutSeconds);

// --- Wildcards ---------------------------------------------------------------

// A wildcard ('*' any text, '?' one character) as an ECMAScript expression,
// case-insensitive unless `caseSensitive`. Not anchored: the caller's choice
// of regex_match or regex_search decides. '{' and '}' are deliberately left
// unescaped and keep their meaning as repetition braces, so a wildcard can
// be an invalid expression: then std::regex_error leaves this function.
std::wregex GenerateWildcardRegex(const CString& wildcard, bool caseSensitive);

// A regular expression of the user's (ECMAScript) compiled so that neither
// its compilation nor a match can exhaust the stack: the compiler descends
// once per nesting level and per item, so a pattern longer than
// c_uiMaxRegexLength or nested deeper than c_uiMaxRegexNesting is refused,
// and matching walks the text by a set of states instead of by recursion
// (which leaves out back-references). Refusals are std::regex_error.
inline constexpr std::size_t c_uiMaxRegexLength = 4096;
inline constexpr std::size_t c_uiMaxRegexNesting = 100;
std::wregex CompileBoundedRegex(const CString& expression, bool caseSensitive);

// --- Values of XML nodes -----------------------------------------------------
// Each reads the node's first text. The target's prior value is the
// default: where nothing is said, it stays as it is. Bad values are never
// reported.

// Exactly "true" or "false"; any other text leaves the target.
void GetBool(const XMLNode& node, bool& target);
// strtoul / strtoull with base 10, unchecked: leading blanks skipped,
// digits up to the first other character, no digits give 0, a minus sign
// negates in unsigned arithmetic, overflow gives the largest value.
// GetUInt32 reads a leading minus as negation in 32 bits ("-1" is all ones);
// a value beyond 32 bits stores the largest value, never its low bits.
void GetUInt32(const XMLNode& node, unsigned int& target);
void GetUInt64(const XMLNode& node, std::uint64_t& target);
// No text or an empty text resets the target; otherwise as GetUInt64.
void GetUInt64Optional(const XMLNode& node, std::optional<std::uint64_t>& target);
// The decimal number at the start of `text` (blanks and a plus skipped), read
// with a point as the decimal separator whatever the process's locale; 0 when
// there is none or `text` is null.
double ParseDouble(const char* text);

// --- Build and machine -------------------------------------------------------

// "Release x64" in the optimised build, "Debug x64" otherwise.
CString GetBuildConfiguration();
// std::thread::hardware_concurrency(), or 1 where that is 0.
unsigned int GetDefaultThreadCount();

}  // namespace TestSuite::Utils
