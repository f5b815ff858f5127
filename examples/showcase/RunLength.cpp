#include "RunLength.h"

#include "TextFiles.h"

namespace Showcase {

namespace {

const char c_hexDigits[] = "0123456789abcdef";

std::string escape(unsigned char byte) {
  switch (byte) {
    case '\n': return "\\n";
    case '\t': return "\\t";
    case ' ': return "\\s";
    case '\\': return "\\\\";
    default: break;
  }
  if (byte > ' ' && byte < 0x7F) return std::string(1, static_cast<char>(byte));
  return std::string("\\x") + c_hexDigits[byte >> 4] + c_hexDigits[byte & 0xF];
}

std::optional<unsigned char> unescape(std::string_view text) {
  if (text.size() == 1 && text[0] != '\\') return static_cast<unsigned char>(text[0]);
  if (text == "\\n") return '\n';
  if (text == "\\t") return '\t';
  if (text == "\\s") return ' ';
  if (text == "\\\\") return '\\';
  if (text.size() != 4 || text.substr(0, 2) != "\\x") return std::nullopt;
  const std::string_view digits(c_hexDigits);
  const std::size_t high = digits.find(text[2]), low = digits.find(text[3]);
  if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
  return static_cast<unsigned char>(high * 16 + low);
}

}  // namespace

std::vector<SRun> EncodeRuns(std::string_view text) {
  std::vector<SRun> runs;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (!runs.empty() && runs.back().ucByte == byte) ++runs.back().uiCount;
    else runs.push_back({1, byte});
  }
  return runs;
}

std::string DecodeRuns(const std::vector<SRun>& runs) {
  std::string text;
  for (const SRun& run : runs) text.append(run.uiCount, static_cast<char>(run.ucByte));
  return text;
}

std::string WriteRuns(const std::vector<SRun>& runs) {
  std::string text;
  for (const SRun& run : runs) text += std::to_string(run.uiCount) + " " + escape(run.ucByte) + "\n";
  return text;
}

std::optional<std::vector<SRun>> ReadRuns(std::string_view text) {
  std::vector<SRun> runs;
  for (const std::string_view line : SplitLines(text)) {
    const std::vector<std::string_view> words = SplitWords(line);
    if (words.size() != 2) return std::nullopt;
    const std::optional<long long> count = ParseInteger(words[0]);
    const std::optional<unsigned char> byte = unescape(words[1]);
    if (!count || *count < 1 || !byte) return std::nullopt;
    runs.push_back({static_cast<std::size_t>(*count), *byte});
  }
  return runs;
}

}  // namespace Showcase
