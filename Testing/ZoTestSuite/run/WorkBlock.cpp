// The work block: its texts in UTF-16 and the reset to a run's defaults.
#include "run/WorkBlock.h"

#include <cstring>

#include "ZoTestSuite.h"

namespace TestSuite {

namespace {

// UTF-16 code units of one character.
unsigned int encodeUtf16(wchar_t ch, char16_t units[2]) {
  const auto c = static_cast<std::uint32_t>(ch);
  if (c < 0x10000 || c > 0x10FFFF) {
    units[0] = static_cast<char16_t>(c < 0x10000 ? c : 0xFFFD);
    return 1;
  }
  units[0] = static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
  units[1] = static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
  return 2;
}

// Encodes as much of `text` as fits into `capacity` units; gives the units
// written and whether all of the text fitted.
bool encodeInto(char16_t* target, unsigned int capacity, const CString& text, unsigned int& written) {
  written = 0;
  for (wchar_t ch : text.Str()) {
    if (static_cast<std::uint32_t>(ch) < 0xD800) {  // one unit, the usual case
      if (written + 1 > capacity) return false;
      target[written++] = static_cast<char16_t>(ch);
      continue;
    }
    char16_t units[2];
    const unsigned int n = encodeUtf16(ch, units);
    if (written + n > capacity) return false;
    for (unsigned int k = 0; k < n; ++k) target[written++] = units[k];
  }
  return true;
}

}  // namespace

void StoreRunOptions(SWorkBlock& block, const SRunOptions& o) {
  SWorkBlockOptions w{};
  w.bTrackHeap = o.bTrackHeap;
  w.bDumpLeaks = o.bDumpLeaks;
  w.bReportMemLeak = o.bReportMemLeak;
  w.bExternal = o.bExternal;
  w.bIsolated = o.bIsolated;
  w.bAssertDialog = o.bAssertDialog;
  w.bShowThreadInfo = o.bShowThreadInfo;
  w.bDebugOption0 = o.bDebugOption0;
  w.bDebugOption1 = o.bDebugOption1;
  w.bDebugOption2 = o.bDebugOption2;
  w.bParallel = o.bParallel;
  w.uiThreadCount = o.uiThreadCount;
  w.uiRepeatCount = o.uiRepeatCount;
  w.uiTimeOutSec = o.uiTimeOutSec;
  w.bObserveID = o.oObserveID.has_value();
  const std::uint64_t observeID = o.oObserveID.value_or(0);
  std::memcpy(w.uiObserveID, &observeID, sizeof observeID);
  w.bObserveSize = o.oObserveSize.has_value();
  const std::uint64_t observeSize = o.oObserveSize.value_or(0);
  std::memcpy(w.uiObserveSize, &observeSize, sizeof observeSize);
  w.bShowTimes = o.bShowTimes;
  w.bRecordStartTime = o.bRecordStartTime;
  block.options = w;
}

SRunOptions LoadRunOptions(const SWorkBlock& block) {
  const SWorkBlockOptions& w = block.options;
  SRunOptions o;
  o.bTrackHeap = w.bTrackHeap;
  o.bDumpLeaks = w.bDumpLeaks;
  o.bReportMemLeak = w.bReportMemLeak;
  o.bExternal = w.bExternal;
  o.bIsolated = w.bIsolated;
  o.bAssertDialog = w.bAssertDialog;
  o.bShowThreadInfo = w.bShowThreadInfo;
  o.bDebugOption0 = w.bDebugOption0;
  o.bDebugOption1 = w.bDebugOption1;
  o.bDebugOption2 = w.bDebugOption2;
  o.bParallel = w.bParallel;
  o.uiThreadCount = w.uiThreadCount;
  o.uiRepeatCount = w.uiRepeatCount;
  o.uiTimeOutSec = w.uiTimeOutSec;
  std::uint64_t value;
  if (w.bObserveID) {
    std::memcpy(&value, w.uiObserveID, sizeof value);
    o.oObserveID = value;
  }
  if (w.bObserveSize) {
    std::memcpy(&value, w.uiObserveSize, sizeof value);
    o.oObserveSize = value;
  }
  o.bShowTimes = w.bShowTimes;
  o.bRecordStartTime = w.bRecordStartTime;
  return o;
}

void ClearBlockOutcome(SWorkBlock& block) {
  block.uiOutputLength = 0;
  block.output[0] = 0;
  block.eResult = Run::eCaseUnknown;
  block.iMemoryDelta = 0;
  block.uiAllocCount = 0;
  block.uiMemoryPeak = 0;
  block.dTime = 0.0;
}

void ResetWorkBlock(SWorkBlock& block) {
  std::memset(static_cast<void*>(&block), 0, sizeof block);
  StoreRunOptions(block, SRunOptions());
  block.eResult = Run::eCaseUnknown;
}

bool StoreBlockText(char16_t* target, unsigned int units, const CString& text) {
  unsigned int written = 0;
  if (!encodeInto(target, units - 1, text, written)) return false;
  target[written] = 0;
  return true;
}

CString LoadBlockText(const char16_t* source, unsigned int units) {
  unsigned int length = 0;
  while (length < units && source[length]) ++length;
  // A pair of units makes one character: never more characters than units.
  std::wstring text(length, L'\0');
  std::size_t out = 0;
  for (unsigned int i = 0; i < length; ++i) {
    const char16_t u = source[i];
    const bool pair =
        u >= 0xD800 && u <= 0xDBFF && i + 1 < length && source[i + 1] >= 0xDC00 && source[i + 1] <= 0xDFFF;
    if (pair) {
      text[out++] = static_cast<wchar_t>(0x10000 + ((u - 0xD800) << 10) + (source[i + 1] - 0xDC00));
      ++i;
    } else {
      text[out++] = static_cast<wchar_t>(u);
    }
  }
  text.resize(out);
  return CString(std::move(text));
}

void AppendBlockOutput(SWorkBlock& block, const CString& text) {
  const unsigned int used = block.uiOutputLength;
  const unsigned int room = used < SWorkBlock::sc_uiOutputLimit ? SWorkBlock::sc_uiOutputLimit - used : 0;
  unsigned int written = 0;
  encodeInto(block.output + used, room, text, written);
  block.uiOutputLength = used + written;
  block.output[block.uiOutputLength] = 0;
}

}  // namespace TestSuite
