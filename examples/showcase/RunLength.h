// RunLength: the code under test of RunLengthTest, a run-length coder. A
// text becomes a list of runs, each a count and one byte, and back.
//
// The written form has one run a line, "COUNT BYTE", where a byte that
// would be hard to read is escaped: "\n", "\t", "\s" for the blank, "\\",
// and "\xHH" for every byte outside printable ASCII.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Showcase {

struct SRun {
  std::size_t uiCount;
  unsigned char ucByte;
};

// The runs of `text`: each a longest stretch of one byte.
std::vector<SRun> EncodeRuns(std::string_view text);
// The text that `runs` stand for.
std::string DecodeRuns(const std::vector<SRun>& runs);

// The written form of `runs`.
std::string WriteRuns(const std::vector<SRun>& runs);
// `text` in the written form read back; nothing if a line is malformed.
std::optional<std::vector<SRun>> ReadRuns(std::string_view text);

}  // namespace Showcase
