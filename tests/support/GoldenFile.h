// GoldenFile: the compare-or-rewrite of a test's output with a file under
// tests/, and the normalisation that takes out of console text what changes
// from run to run.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

// Compares `actual` byte for byte with the file tests/<relativePath> of the
// source tree; a missing file fails the test. With ZO_UPDATE_GOLDEN=1 in the
// environment the file is written instead, and the change is then reviewed
// in the diff.
void ExpectGoldenFile(const std::string& relativePath, const std::string& actual);

// Pairs of a text as it stands in the output and the name it is replaced by.
using Replacements = std::vector<std::pair<std::string, std::string>>;

// Replaces what changes from run to run: each text of `replacements` (paths
// of temporary directories, process ids) by its name, times in brackets
// ("[12.30ms]" becomes "[TIME]"), the run time of the summary ("TIME") and
// the start times of cases ("[2024-05-04 12:34:56.789]" becomes "[START]").
// Process tags such as "[P3]" stay: they do not change between runs.
std::string NormalizeRunText(std::string text, const Replacements& replacements = {});

}  // namespace TestSupport
