// TextFiles: the small text helpers that the showcase test classes share:
// whole files in and out, lines, and numbers without a locale.
//
// Numbers go through std::from_chars and std::to_chars on purpose: they
// neither allocate nor depend on the global locale, so nothing they do shows
// up as a leak under the heap tracker.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZoUnitTest.h"

namespace Showcase {

// The whole file as bytes; nothing if it cannot be opened or read.
std::optional<std::string> ReadTextFile(const CString& path);
// Writes `text` as the whole file; false if that fails.
bool WriteTextFile(const CString& path, const std::string& text);

// The lines of `text` without their line ends ("\n" or "\r\n"); a last line
// without a line end counts, an empty text has no lines.
std::vector<std::string_view> SplitLines(std::string_view text);
// The blank-separated words of one line.
std::vector<std::string_view> SplitWords(std::string_view line);
// `text` without leading and trailing blanks and tabs.
std::string_view Trim(std::string_view text);

// The whole of `word` as a number; nothing if any of it is not a number.
std::optional<double> ParseNumber(std::string_view word);
std::optional<long long> ParseInteger(std::string_view word);
// `value` rounded to 12 significant digits, as printf's "%.12g" would write
// it in the C locale; "-0" prints as "0".
std::string FormatNumber(double value);

// "1 run", "2 runs": a count with its noun, for messages.
std::string Counted(unsigned long long count, std::string_view noun);
// `text` in single quotes, for messages.
std::string Quoted(std::string_view text);

// `path` with its last extension replaced: ("x/a.in", ".ref") -> "x/a.ref".
CString ReplaceExtension(const CString& path, const wchar_t* extension);

// The 1-based number of the first line where `actual` and `expected` part,
// or 0 if they are equal.
std::size_t FirstDifferentLine(std::string_view actual, std::string_view expected);

}  // namespace Showcase
