// SystemPath: the one conversion pair between the wide text of a file name
// and the bytes that the system takes and gives.
//
// File names are bytes. UTF-8 is decoded where the bytes form it; each other
// byte (80 to FF) is carried losslessly as U+DC80 to U+DCFF (U+DC00 + byte,
// lone low surrogates that no decoded text holds) and given back as that
// byte, so a name read from a directory opens again. Such a name prints as
// U+FFFD on the console (CString::ToUtf8) and as '?' in an 8-bit report
// (CString::ToLatin1). Every path that crosses to the system passes here.
#pragma once

#include <string>
#include <string_view>

#include "CString.h"

CString PathFromSystem(std::string_view bytes);
std::string PathToSystem(const CString& path);
