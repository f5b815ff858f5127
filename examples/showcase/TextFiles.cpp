#include "TextFiles.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>

namespace Showcase {

namespace {

struct SFileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, SFileCloser>;

FilePtr openFile(const CString& path, const char* mode) { return FilePtr(std::fopen(path.ToUtf8().c_str(), mode)); }

}  // namespace

std::optional<std::string> ReadTextFile(const CString& path) {
  FilePtr file = openFile(path, "rb");
  if (!file) return std::nullopt;
  std::string text;
  char buffer[4096];
  for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0;) text.append(buffer, got);
  if (std::ferror(file.get())) return std::nullopt;
  return text;
}

bool WriteTextFile(const CString& path, const std::string& text) {
  FilePtr file = openFile(path, "wb");
  if (!file) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
  return std::fclose(file.release()) == 0 && written;
}

std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::vector<std::string_view> SplitWords(std::string_view line) {
  std::vector<std::string_view> words;
  std::size_t at = 0;
  while ((at = line.find_first_not_of(" \t", at)) != std::string_view::npos) {
    const std::size_t end = std::min(line.find_first_of(" \t", at), line.size());
    words.push_back(line.substr(at, end - at));
    at = end;
  }
  return words;
}

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<double> ParseNumber(std::string_view word) {
  if (!word.empty() && word.front() == '+') word.remove_prefix(1);
  double value = 0.0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size() || word.empty()) return std::nullopt;
  return value;
}

std::optional<long long> ParseInteger(std::string_view word) {
  long long value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (error != std::errc() || end != word.data() + word.size() || word.empty()) return std::nullopt;
  return value;
}

std::string FormatNumber(double value) {
  if (value == 0.0) value = 0.0;  // no "-0"
  char buffer[32];
  const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 12);
  return error == std::errc() ? std::string(buffer, end) : std::string("nan");
}

std::string Counted(unsigned long long count, std::string_view noun) {
  std::string text = std::to_string(count);
  text.push_back(' ');
  text.append(noun);
  if (count != 1) text.push_back('s');
  return text;
}

std::string Quoted(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size() + 2);
  quoted.push_back('\'');
  quoted.append(text);
  quoted.push_back('\'');
  return quoted;
}

CString ReplaceExtension(const CString& path, const wchar_t* extension) {
  const int dot = path.ReverseFind(L'.');
  const int slash = path.ReverseFind(L'/');
  return (dot > slash ? path.Left(dot) : path) + extension;
}

std::size_t FirstDifferentLine(std::string_view actual, std::string_view expected) {
  if (actual == expected) return 0;
  const std::vector<std::string_view> a = SplitLines(actual), e = SplitLines(expected);
  std::size_t line = 0;
  while (line < a.size() && line < e.size() && a[line] == e[line]) ++line;
  return line + 1;
}

}  // namespace Showcase
