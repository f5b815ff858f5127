// Typed values of XML nodes for Utils: the first text of a node read as a
// bool or an unsigned number, the target's prior value being the default.
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
  target = static_cast<unsigned int>(std::strtoul(text, nullptr, 10));
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

}  // namespace TestSuite::Utils
