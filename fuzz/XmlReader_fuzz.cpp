// XmlReader_fuzz: the XML reader on arbitrary bytes, from memory and from a
// file (which adds the recognition of UTF-16), with every node of the tree
// read back.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "services/xml/XMLNode.h"

using TestSuite::XMLNode;
using TestSuite::XMLResults;

namespace {

// The attribute names that the system's files use.
const char* const c_sAttributeNames[] = {"name", "version", "encoding", "default", "select", "role", "type"};

// Reads every name, text, clear and attribute, without recursion: the
// reader allows any depth, so a walk must too.
std::size_t visitAll(const XMLNode& root) {
  std::size_t uiBytes = 0;
  const auto count = [&uiBytes](const char* text) { uiBytes += text ? std::char_traits<char>::length(text) : 0; };
  std::vector<XMLNode> pending{root};
  while (!pending.empty()) {
    const XMLNode node = pending.back();
    pending.pop_back();
    count(node.getName());
    for (int i = 0; i < node.nText(); ++i) count(node.getText(i));
    for (int i = 0; i < node.nClear(); ++i) count(node.getClear(i));
    for (const char* name : c_sAttributeNames) {
      // A found attribute moves the position behind it; a failed search leaves it.
      for (int iPosition = 0, iBefore = -1; iPosition != iBefore;) {
        iBefore = iPosition;
        count(node.getAttribute(name, &iPosition));
      }
    }
    for (int i = 0; i < node.getChildCount(); ++i) pending.push_back(node.getChildNode(i));
    if (node.getChildCount() > 0 && node.getChildNode(0).getName()) {
      const char* name = node.getChildNode(0).getName();
      int iPosition = 0;
      while (!node.getChildNode(name, &iPosition).isEmpty()) count(name);
      uiBytes += static_cast<std::size_t>(node.getChildCount(name));
      count(node.getChildNode(0).getParentNode().getName());
    }
  }
  return uiBytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = FuzzSupport::Bytes(data, size);
  XMLResults results{};
  visitAll(XMLNode::parseString(text.c_str(), nullptr, &results));
  visitAll(XMLNode::parseString(text.c_str(), "testsuite", &results));
  const CString path = FuzzSupport::WriteInput(L"input.xml", data, size);
  visitAll(XMLNode::parseFile(path.GetString(), nullptr, &results));
  return 0;
}
