// Typed values of XML nodes for Utils: the first text of a node read as a
// bool or an unsigned number, the target's prior value being the default.
#include <charconv>
#include <cstdlib>
#include <cstring>

#include "services/Utils.h"

namespace TestSuite::Utils {

void GetBool(const XMLNode& node, bool& target) {
  const char* text = node.getText(0);
  if (!text) return;
  if (std::strcmp(text, "true") == 0) target = true;
  else if (std::strcmp(text, "false") == 0) target = false;
}

void GetUInt32(const XMLNode& node, unsigned int& target) {
  const char* text = node.getText(0);
  if (!text) return;
  // strtoul negates a leading minus in 64 bits ("-1" is all ones); the same
  // is done here in 32 bits, and a magnitude beyond 32 bits saturates.
  const char* digits = text;
  while (*digits == ' ' || (*digits >= '\t' && *digits <= '\r')) ++digits;
  const bool bNegative = *digits == '-';
  const std::uint64_t magnitude = std::strtoull(bNegative ? digits + 1 : digits, nullptr, 10);
  if (magnitude > 0xFFFFFFFFull) target = 0xFFFFFFFFu;
  else target = bNegative ? 0u - static_cast<unsigned int>(magnitude) : static_cast<unsigned int>(magnitude);
}

void GetUInt64(const XMLNode& node, std::uint64_t& target) {
  const char* text = node.getText(0);
  if (!text) return;
  target = std::strtoull(text, nullptr, 10);
}

void GetUInt64Optional(const XMLNode& node, std::optional<std::uint64_t>& target) {
  const char* text = node.getText(0);
  if (!text || !*text) {
    target.reset();
    return;
  }
  target = std::strtoull(text, nullptr, 10);
}

double ParseDouble(const char* text) {
  if (!text) return 0.0;
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  if (*text == '+') ++text;
  double value = 0.0;
  std::from_chars(text, text + std::strlen(text), value);
  return value;
}

}  // namespace TestSuite::Utils
