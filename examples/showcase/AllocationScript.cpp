#include "AllocationScript.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

#include "TextFiles.h"

namespace Showcase {

namespace {

struct SBlock {
  void* pData;
  std::size_t uiSize;
};

class CInterpreter {
 public:
  ~CInterpreter() {
    for (auto& [name, block] : m_blocks) std::free(block.pData);
  }

  // Carries out one command; an error text if it cannot.
  std::string Execute(const std::vector<std::string_view>& words) {
    const std::string_view command = words[0];
    if (words.size() == 2) {
      if (command == "delete") return release(std::string(words[1]), true);
      if (command == "keep") return release(std::string(words[1]), false);
    } else if (words.size() == 3) {
      const std::optional<long long> number = ParseInteger(words[2]);
      if (!number.has_value() || number.value() < 0) return Quoted(words[2]) + " is not a size";
      const auto size = static_cast<std::size_t>(number.value());
      if (command == "new") return allocate(std::string(words[1]), size);
      if (command == "resize") return resize(std::string(words[1]), size);
      if (command == "churn") return churn(words[1], size);
    }
    return "unknown command " + Quoted(command) + " or wrong number of arguments";
  }

  // The blocks still held at the end, as an error text.
  std::string Leftovers() const {
    std::string names;
    for (const auto& [name, block] : m_blocks) names += (names.empty() ? "" : ", ") + name;
    return names.empty() ? std::string() : "never deleted: " + names;
  }

  SScriptOutcome& Outcome() { return m_outcome; }

 private:
  std::string allocate(const std::string& name, std::size_t size) {
    if (m_blocks.count(name) != 0) return "block " + Quoted(name) + " exists already";
    void* data = std::malloc(size);
    if (data == nullptr && size != 0) return "out of memory";
    std::memset(data, 0xA5, size);
    m_blocks[name] = {data, size};
    return counted(size);
  }

  std::string resize(const std::string& name, std::size_t size) {
    const auto found = m_blocks.find(name);
    if (found == m_blocks.end()) return "no block " + Quoted(name);
    void* data = std::realloc(found->second.pData, size);
    if (data == nullptr && size != 0) return "out of memory";
    const std::size_t oldSize = found->second.uiSize;
    if (size > oldSize) std::memset(static_cast<char*>(data) + oldSize, 0x5A, size - oldSize);
    m_uiHeld -= oldSize;
    found->second = {data, size};
    return counted(size);
  }

  std::string churn(std::string_view countWord, std::size_t size) {
    const std::optional<long long> count = ParseInteger(countWord);
    if (!count || *count < 0) return Quoted(countWord) + " is not a count";
    for (long long i = 0; i < *count; ++i) {
      void* data = std::malloc(size);
      std::memset(data, static_cast<int>(i), size);
      std::free(data);
      ++m_outcome.uiAllocations;
    }
    m_outcome.uiPeakBytes = std::max<std::uint64_t>(m_outcome.uiPeakBytes, m_uiHeld + size);
    return {};
  }

  std::string release(const std::string& name, bool free) {
    const auto found = m_blocks.find(name);
    if (found == m_blocks.end()) return "no block " + Quoted(name);
    if (free) std::free(found->second.pData);
    else m_outcome.uiKeptBytes += found->second.uiSize;
    m_uiHeld -= found->second.uiSize;
    m_blocks.erase(found);
    return {};
  }

  std::string counted(std::size_t size) {
    ++m_outcome.uiAllocations;
    m_uiHeld += size;
    m_outcome.uiPeakBytes = std::max<std::uint64_t>(m_outcome.uiPeakBytes, m_uiHeld);
    return {};
  }

  std::map<std::string, SBlock> m_blocks;
  SScriptOutcome m_outcome;
  std::uint64_t m_uiHeld = 0;
};

}  // namespace

SScriptOutcome RunAllocationScript(std::string_view script) {
  CInterpreter interpreter;
  std::size_t lineNumber = 0;
  for (const std::string_view line : SplitLines(script)) {
    ++lineNumber;
    const std::vector<std::string_view> words = SplitWords(line);
    if (words.empty() || words[0].front() == '#') continue;
    const std::string error = interpreter.Execute(words);
    if (!error.empty()) {
      interpreter.Outcome().sError = "line " + std::to_string(lineNumber) + ": " + error;
      return interpreter.Outcome();
    }
  }
  interpreter.Outcome().sError = interpreter.Leftovers();
  interpreter.Outcome().bOk = interpreter.Outcome().sError.empty();
  return interpreter.Outcome();
}

}  // namespace Showcase
