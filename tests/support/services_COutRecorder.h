// services_COutRecorder: catches every message that COut sends while it
// lives, decorations included, through one custom sink that is registered
// once per test program (COut cannot take a sink back).
#pragma once

#include <mutex>
#include <vector>

#include "foundation/CString.h"
#include "foundation/ZoColorRGBA.h"

// One recorder at a time. By default the console is switched off while it
// lives and switched on again (its initial state) when it goes.
class COutRecorder {
 public:
  struct SMessage {
    CString sText;
    bool bBold = false;
    bool bUnderlined = false;
    bool bHasColor = false;
    ZoColorRGBA color;
  };

  explicit COutRecorder(bool consoleOff = true);
  ~COutRecorder();
  COutRecorder(const COutRecorder&) = delete;
  COutRecorder& operator=(const COutRecorder&) = delete;

  std::vector<SMessage> Messages() const;
  // All texts in the order they came, joined.
  CString Text() const;
  void Clear();
};
