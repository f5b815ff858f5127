// XMLNode: the value handle over shared node data, its look-ups, and the
// two ways into a parse.
#include "services/xml/XMLNode.h"

#include "services/xml/XMLCharacters.h"
#include "services/xml/XMLInput.h"
#include "services/xml/XMLNodeData.h"
#include "services/xml/XMLParser.h"

namespace TestSuite {

XMLNode::XMLNode(const XMLNode& other) : m_data(other.m_data) { XMLNodeDataAddRef(m_data); }

XMLNode& XMLNode::operator=(const XMLNode& other) {
  if (this == &other) return *this;
  XMLNodeDataAddRef(other.m_data);
  XMLNodeDataRelease(m_data);
  m_data = other.m_data;
  return *this;
}

XMLNode::~XMLNode() { XMLNodeDataRelease(m_data); }

XMLNode XMLNode::parseFile(const wchar_t* path, const char* firstTag, XMLResults* results) {
  if (results) *results = XMLResults();
  CXMLInput input;
  const XMLError eError = input.ReadFile(path);
  if (eError != eXMLErrorNone) {
    if (results) results->error = eError;
    return XMLNode();
  }
  return CXMLParser::Parse(input.Text(), firstTag, results);
}

XMLNode XMLNode::parseString(const char* text, const char* firstTag, XMLResults* results) {
  if (results) *results = XMLResults();
  if (!text || !*text) {
    if (results) results->error = text ? eXMLErrorEmpty : eXMLErrorNoXMLTagFound;
    return XMLNode();
  }
  return CXMLParser::Parse(CXMLInput::SkipUtf8Mark(text), firstTag, results);
}

CString XMLNode::widen(const char* text) const {
  if (!text) return CString();
  return (m_data && m_data->bLatin1) ? CString::FromLatin1(text) : CString(text);
}

const char* XMLNode::getName() const { return m_data ? m_data->sName : nullptr; }

const char* XMLNode::getText(int index) const {
  if (!m_data || index < 0 || index >= m_data->iTextCount) return nullptr;
  return m_data->pTexts[index];
}

int XMLNode::nText() const { return m_data ? m_data->iTextCount : 0; }

int XMLNode::nClear() const { return m_data ? m_data->iClearCount : 0; }

const char* XMLNode::getClear(int index) const {
  if (!m_data || index < 0 || index >= m_data->iClearCount) return nullptr;
  return m_data->pClears[index].sValue;
}

int XMLNode::getChildCount() const { return m_data ? m_data->iChildCount : 0; }

int XMLNode::getChildCount(const char* name) const {
  if (!m_data) return 0;
  int iCount = 0;
  for (int i = 0; i < m_data->iChildCount; ++i) {
    if (XMLNamesEqual(m_data->pChildren[i]->sName, name)) ++iCount;
  }
  return iCount;
}

XMLNode XMLNode::getChildNode(int index) const {
  if (!m_data || index < 0 || index >= m_data->iChildCount) return XMLNode();
  XMLNodeData* pChild = m_data->pChildren[index];
  XMLNodeDataAddRef(pChild);
  return XMLNode(pChild);
}

XMLNode XMLNode::getChildNode(const char* name, int index) const {
  if (!m_data || index < 0) return XMLNode();
  for (int i = 0; i < m_data->iChildCount; ++i) {
    if (XMLNamesEqual(m_data->pChildren[i]->sName, name) && index-- == 0) return getChildNode(i);
  }
  return XMLNode();
}

XMLNode XMLNode::getChildNode(const char* name, int* position) const {
  if (!m_data) return XMLNode();
  for (int i = (position && *position > 0) ? *position : 0; i < m_data->iChildCount; ++i) {
    if (XMLNamesEqual(m_data->pChildren[i]->sName, name)) {
      if (position) *position = i + 1;
      return getChildNode(i);
    }
  }
  return XMLNode();
}

const char* XMLNode::getAttribute(const char* name, int* position) const {
  if (!m_data) return nullptr;
  for (int i = (position && *position > 0) ? *position : 0; i < m_data->iAttributeCount; ++i) {
    if (XMLNamesEqual(m_data->pAttributes[i].sName, name)) {
      if (position) *position = i + 1;
      return m_data->pAttributes[i].sValue;
    }
  }
  return nullptr;
}

int XMLNode::nAttribute() const { return m_data ? m_data->iAttributeCount : 0; }

bool XMLNode::isDeclaration() const { return m_data && m_data->bDeclaration; }

XMLNode XMLNode::getParentNode() const {
  if (!m_data || !m_data->pParent) return XMLNode();
  XMLNodeDataAddRef(m_data->pParent);
  return XMLNode(m_data->pParent);
}

}  // namespace TestSuite
