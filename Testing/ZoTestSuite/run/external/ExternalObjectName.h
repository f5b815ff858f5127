// The name under which a shared block or an event of external execution is
// known to the operating system: its generated id behind a fixed prefix, so
// that the objects of this system stand out among the machine's others and
// can be found again after a crash.
#pragma once

#include <string>

#include "foundation/CString.h"

namespace TestSuite {

inline constexpr const char* sc_szExternalObjectPrefix = "ZoTestSuite-";

inline std::string MakeExternalObjectName(const CString& id) { return sc_szExternalObjectPrefix + id.ToUtf8(); }

}  // namespace TestSuite
