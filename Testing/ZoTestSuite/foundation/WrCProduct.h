// WrCProduct: the product that this process belongs to, registered once at
// start-up for the foundation libraries that ask for it.
#pragma once

#include <optional>

#include "CString.h"

// What a product tells about itself.
struct WrSProductInfo {
  unsigned int uiProductNumber = 0;
  CString sName;
  CString sVersion;
  CString sDescription;
  unsigned int uiFlags = 0;
};

class WrCProduct {
 public:
  // Registers `info` as the process's product. With `bReplace` false an
  // earlier registration stays and the call gives false. Thread-safe.
  static bool Set(const WrSProductInfo& info, bool bReplace);
  // The registered product; empty if none has been registered.
  static std::optional<WrSProductInfo> Get();
};
