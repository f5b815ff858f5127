// CXMLParser: frames, tokens and the rules for the result.
#include "services/xml/XMLParser.h"

#include <cstring>
#include <new>

#include "services/xml/XMLCharacters.h"
#include "services/xml/XMLEntities.h"

namespace TestSuite {

namespace {

// The document root gives way to its only child if it holds nothing else.
XMLNodeData* replaceRoot(XMLNodeData* pRoot) {
  if (pRoot->iChildCount != 1 || pRoot->iTextCount || pRoot->iClearCount || pRoot->iAttributeCount) { return pRoot; }
  XMLNodeData* pChild = pRoot->pChildren[0];
  XMLNodeDataAddRef(pChild);
  XMLNodeDataRelease(pRoot);
  return pChild;
}

// The first child named `sTag`; a declaration child that is not the one
// is descended into and the search starts over there.
XMLNodeData* findFirstTag(XMLNodeData* pNode, const char* sTag) {
  int i = 0;
  while (i < pNode->iChildCount) {
    XMLNodeData* pChild = pNode->pChildren[i];
    if (XMLNamesEqual(pChild->sName, sTag)) return pChild;
    if (pChild->bDeclaration) {
      pNode = pChild;
      i = 0;
    } else {
      ++i;
    }
  }
  return nullptr;
}

}  // namespace

XMLNode CXMLParser::Parse(const char* sText, const char* sFirstTag, XMLResults* pResults) {
  XMLError eError;
  std::size_t uiErrorOffset;
  XMLNodeData* pNode;
  {
    CXMLGrowth::CScope growth;
    CXMLParser parser(sText);
    parser.run();
    pNode = parser.finish();
    eError = parser.m_eError;
    uiErrorOffset = parser.m_uiErrorOffset;
  }
  pNode = replaceRoot(pNode);
  if (eError <= eXMLErrorMissingEndTag && sFirstTag && !XMLNamesEqual(pNode->sName, sFirstTag)) {
    XMLNodeData* pFound = findFirstTag(pNode, sFirstTag);
    XMLNodeDataAddRef(pFound);
    XMLNodeDataRelease(pNode);
    pNode = pFound;
    if (!pFound) eError = eXMLErrorFirstTagNotFound;
  }
  if (eError > eXMLErrorMissingEndTag) {
    XMLNodeDataRelease(pNode);
    pNode = nullptr;
  }
  if (pResults) {
    *pResults = XMLResults();
    pResults->error = eError;
    if (eError != eXMLErrorNone && eError != eXMLErrorFirstTagNotFound) {
      XMLComputePosition(sText, uiErrorOffset, &pResults->nLine, &pResults->nColumn);
    }
  }
  return XMLNode(pNode);
}

CXMLParser::CXMLParser(const char* sText)
    : m_sText(sText), m_bSingleByte(XMLDeclaresSingleByteEncoding(sText)), m_tokens(sText) {}

CXMLParser::~CXMLParser() {
  for (std::size_t i = 0; i < m_children.Size(); ++i) XMLNodeDataRelease(m_children[i]);
  XMLNodeDataRelease(m_pRoot);
}

void CXMLParser::run() {
  SFrame root;
  root.bRoot = true;
  m_frames.Push(root);
  while (m_bInsideTag ? stepInside() : stepOutside()) {}
}

XMLNodeData* CXMLParser::finish() {
  while (!m_frames.IsEmpty()) closeFrame();
  XMLNodeData* pRoot = m_pRoot;
  m_pRoot = nullptr;
  return pRoot;
}

bool CXMLParser::stepOutside() {
  m_tokens.SkipWhite();
  const char c = m_sText[m_tokens.Position()];
  if (c == 0) {
    endOfInput();
    return false;
  }
  if (c != '<') return addTextRun();
  const SXMLToken token = m_tokens.Next();
  switch (token.eType) {
    case EXMLToken::Clear: return readClear(token);
    case EXMLToken::CloseTag: return closeTag(token);
    default:  // TagStart or Declaration: nothing else begins with "<"
      return openElement(token);
  }
}

bool CXMLParser::stepInside() {
  const SXMLToken token = m_tokens.Next();
  if (token.eType == EXMLToken::End) {
    endOfInput();
    return false;
  }
  switch (m_eAttribute) {
    case EAttribute::Name: return inAttributeName(token);
    case EAttribute::Equals: return inAttributeEquals(token);
    default: return inAttributeValue(token);
  }
}

bool CXMLParser::inAttributeName(const SXMLToken& token) {
  switch (token.eType) {
    case EXMLToken::Text:
      m_pendingName = token;
      m_eAttribute = EAttribute::Equals;
      return true;
    case EXMLToken::TagEnd:
    case EXMLToken::ShortHandClose: {
      // A declaration's name that is the last thing in its tag loses a
      // trailing "?", as an attribute would.
      SFrame& frame = m_frames.Back();
      if (frame.bDeclaration && m_attributes.Size() == frame.uiAttributeMark && frame.uiNameLength > 0 &&
          m_strings[frame.uiName + frame.uiNameLength - 1] == '?') {
        m_strings[frame.uiName + --frame.uiNameLength] = 0;
      }
      endTag(token);
      return true;
    }
    default: return fail(eXMLErrorUnexpectedToken, token.uiStart);
  }
}

bool CXMLParser::inAttributeEquals(const SXMLToken& token) {
  switch (token.eType) {
    case EXMLToken::Text:
      m_attributes.Push({storeRaw(m_sText + m_pendingName.uiStart, m_pendingName.uiLength), c_uiNoValue});
      m_pendingName = token;
      return true;
    case EXMLToken::TagEnd:
    case EXMLToken::ShortHandClose: {
      std::size_t uiLength = m_pendingName.uiLength;
      if (m_frames.Back().bDeclaration && endsWithQuestionMark(m_pendingName.uiStart, uiLength)) --uiLength;
      if (uiLength) m_attributes.Push({storeRaw(m_sText + m_pendingName.uiStart, uiLength), c_uiNoValue});
      endTag(token);
      return true;
    }
    case EXMLToken::Equals: m_eAttribute = EAttribute::Value; return true;
    default: return fail(eXMLErrorUnexpectedToken, token.uiStart);
  }
}

bool CXMLParser::inAttributeValue(const SXMLToken& token) {
  std::size_t uiStart = token.uiStart;
  std::size_t uiLength = token.uiLength;
  if (token.eType == EXMLToken::QuotedText) {
    ++uiStart;
    uiLength -= 2;
  } else if (token.eType == EXMLToken::Text) {
    if (m_frames.Back().bDeclaration && endsWithQuestionMark(uiStart, uiLength)) --uiLength;
  } else {
    return fail(eXMLErrorUnexpectedToken, token.uiStart);
  }
  const std::size_t uiName = storeRaw(m_sText + m_pendingName.uiStart, m_pendingName.uiLength);
  std::size_t uiValue;
  if (!storeDecoded(uiStart, uiLength, &uiValue)) return false;
  m_attributes.Push({uiName, uiValue});
  m_eAttribute = EAttribute::Name;
  return true;
}

bool CXMLParser::addTextRun() {
  const std::size_t uiStart = m_tokens.Position();
  std::size_t uiEnd = m_tokens.ScanToTag();
  while (uiEnd > uiStart && XMLIsWhite(m_sText[uiEnd - 1])) --uiEnd;
  std::size_t uiText;
  if (!storeDecoded(uiStart, uiEnd - uiStart, &uiText)) return false;
  m_texts.Push(uiText);
  return true;
}

bool CXMLParser::readClear(const SXMLToken& token) {
  const SXMLClearTag& tag = c_XMLClearTags[token.iClear];
  const std::size_t uiContent = token.uiStart + tag.uiOpenLength;
  const char* pClose = std::strstr(m_sText + uiContent, tag.sClose);
  if (!pClose) return fail(eXMLErrorUnmatchedEndClearTag, token.uiStart);
  const auto uiClose = static_cast<std::size_t>(pClose - m_sText);
  m_clears.Push({storeRaw(m_sText + uiContent, uiClose - uiContent), token.iClear});
  m_uiLastTagEnd = uiClose + tag.uiCloseLength;
  m_tokens.SetPosition(m_uiLastTagEnd);
  return true;
}

bool CXMLParser::openElement(const SXMLToken& token) {
  const SXMLToken name = m_tokens.Next();
  if (name.eType != EXMLToken::Text) return fail(eXMLErrorMissingTagName, name.uiStart);
  pushFrame(token.eType == EXMLToken::Declaration, name.uiStart, name.uiLength);
  m_bInsideTag = true;
  m_eAttribute = EAttribute::Name;
  return true;
}

bool CXMLParser::closeTag(const SXMLToken& token) {
  const SXMLToken name = m_tokens.Next();
  if (name.eType != EXMLToken::Text) return fail(eXMLErrorMissingEndTagName, name.uiStart);
  const SXMLToken end = m_tokens.Next();
  if (end.eType != EXMLToken::TagEnd) return fail(eXMLErrorMissingEndTagName, end.uiStart);
  m_uiLastTagEnd = end.uiStart + end.uiLength;
  // The close tag ends every element up to the first one that it fits; a
  // passed element was not closed properly, a passed declaration never is.
  const char* sCloseName = m_sText + name.uiStart;
  for (;;) {
    const SFrame& frame = m_frames.Back();
    if (frame.bRoot) return fail(eXMLErrorUnmatchedEndTag, token.uiStart);
    const bool bFits = closeNameFits(frame, sCloseName);
    if (!bFits && !frame.bDeclaration) noteUnclosed();
    closeFrame();
    if (bFits) return true;
  }
}

void CXMLParser::endTag(const SXMLToken& token) {
  m_uiLastTagEnd = token.uiStart + token.uiLength;
  m_bInsideTag = false;
  if (token.eType == EXMLToken::ShortHandClose) closeFrame();
}

void CXMLParser::endOfInput() {
  for (std::size_t i = m_frames.Size(); i-- > 1;) {
    if (!m_frames[i].bDeclaration) {
      noteUnclosed();
      return;
    }
  }
}

bool CXMLParser::fail(XMLError eError, std::size_t uiOffset) {
  m_eError = eError;
  m_uiErrorOffset = uiOffset;
  return false;
}

void CXMLParser::noteUnclosed() {
  m_eError = eXMLErrorMissingEndTag;
  m_uiErrorOffset = m_uiLastTagEnd;
}

// Compared over the length of the element's name; the close tag's name
// must end there.
bool CXMLParser::closeNameFits(const SFrame& frame, const char* sCloseName) const {
  if (!XMLPrefixEqual(m_strings.Data() + frame.uiName, sCloseName, frame.uiNameLength)) return false;
  const char c = sCloseName[frame.uiNameLength];
  return XMLIsWhite(c) || c == '/' || c == '<' || c == '=' || c == '>';
}

bool CXMLParser::endsWithQuestionMark(std::size_t uiStart, std::size_t uiLength) const {
  return uiLength > 0 && m_sText[uiStart + uiLength - 1] == '?';
}

std::size_t CXMLParser::storeRaw(const char* sSource, std::size_t uiLength) {
  const std::size_t uiOffset = m_strings.Size();
  char* pTarget = m_strings.Extend(uiLength + 1);
  std::memcpy(pTarget, sSource, uiLength);
  pTarget[uiLength] = 0;
  return uiOffset;
}

bool CXMLParser::storeDecoded(std::size_t uiStart, std::size_t uiLength, std::size_t* puiOffset) {
  const std::size_t uiOffset = m_strings.Size();
  char* pTarget = m_strings.Extend(uiLength + 1);
  std::size_t uiResult;
  if (!XMLDecodeEntities(m_sText + uiStart, uiLength, pTarget, &uiResult)) {
    m_strings.Truncate(uiOffset);
    return fail(eXMLErrorUnknownCharacterEntity, uiStart + uiResult);
  }
  pTarget[uiResult] = 0;
  m_strings.Truncate(uiOffset + uiResult + 1);
  *puiOffset = uiOffset;
  return true;
}

void CXMLParser::pushFrame(bool bDeclaration, std::size_t uiNameStart, std::size_t uiNameLength) {
  SFrame frame;
  frame.uiStringMark = m_strings.Size();
  frame.uiName = storeRaw(m_sText + uiNameStart, uiNameLength);
  frame.uiNameLength = uiNameLength;
  frame.uiChildMark = m_children.Size();
  frame.uiTextMark = m_texts.Size();
  frame.uiClearMark = m_clears.Size();
  frame.uiAttributeMark = m_attributes.Size();
  frame.bDeclaration = bDeclaration;
  m_frames.Push(frame);
}

// The open element on top becomes a node of its parent (the document root
// becomes m_pRoot).
void CXMLParser::closeFrame() {
  const SFrame frame = m_frames.Back();
  m_frames.Pop();
  m_children.Extend(1);  // room for the new node, so that it cannot get lost
  m_children.Pop();
  XMLNodeData* pNode = buildNode(frame);
  m_children.Truncate(frame.uiChildMark);
  m_texts.Truncate(frame.uiTextMark);
  m_clears.Truncate(frame.uiClearMark);
  m_attributes.Truncate(frame.uiAttributeMark);
  m_strings.Truncate(frame.uiStringMark);
  if (m_frames.IsEmpty()) {
    m_pRoot = pNode;
  } else {
    m_children.Push(pNode);
  }
}

// One block for the element: what it collected lies on the stacks above
// its marks, its texts in m_strings behind its string mark.
XMLNodeData* CXMLParser::buildNode(const SFrame& frame) {
  SXMLNodeLayout layout;
  layout.iChildCount = static_cast<int>(m_children.Size() - frame.uiChildMark);
  layout.iTextCount = static_cast<int>(m_texts.Size() - frame.uiTextMark);
  layout.iClearCount = static_cast<int>(m_clears.Size() - frame.uiClearMark);
  layout.iAttributeCount = static_cast<int>(m_attributes.Size() - frame.uiAttributeMark);
  layout.uiTextBytes = m_strings.Size() - frame.uiStringMark;
  char* pTextArea = nullptr;
  XMLNodeData* pNode = XMLNodeDataCreate(layout, &pTextArea);
  if (!pNode) throw std::bad_alloc();
  if (layout.uiTextBytes) std::memcpy(pTextArea, m_strings.Data() + frame.uiStringMark, layout.uiTextBytes);
  auto text = [&](std::size_t uiOffset) -> const char* { return pTextArea + (uiOffset - frame.uiStringMark); };

  pNode->sName = frame.bRoot ? nullptr : text(frame.uiName);
  pNode->bDeclaration = frame.bDeclaration;
  pNode->bLatin1 = m_bSingleByte;
  XMLNodeData* const* pChildren = m_children.Data() + frame.uiChildMark;
  for (int i = 0; i < layout.iChildCount; ++i) {
    pChildren[i]->pParent = pNode;
    pNode->pChildren[i] = pChildren[i];
  }
  const std::size_t* pTexts = m_texts.Data() + frame.uiTextMark;
  for (int i = 0; i < layout.iTextCount; ++i) pNode->pTexts[i] = text(pTexts[i]);
  const SClearEntry* pClears = m_clears.Data() + frame.uiClearMark;
  for (int i = 0; i < layout.iClearCount; ++i) {
    const SXMLClearTag& tag = c_XMLClearTags[pClears[i].iTag];
    pNode->pClears[i] = {text(pClears[i].uiValue), tag.sOpen, tag.sClose};
  }
  const SAttributeEntry* pAttributes = m_attributes.Data() + frame.uiAttributeMark;
  for (int i = 0; i < layout.iAttributeCount; ++i) {
    const std::size_t uiValue = pAttributes[i].uiValue;
    pNode->pAttributes[i] = {text(pAttributes[i].uiName), uiValue == c_uiNoValue ? nullptr : text(uiValue)};
  }
  return pNode;
}

}  // namespace TestSuite
