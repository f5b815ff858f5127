// FileArguments: the front end's checks of the files that a tool mode is
// told to write, each refusal with the red line that says what is wrong,
// so that nothing is written where it would do harm.
#pragma once

#include "ZoTestSuite.h"

namespace TestSuite::CLI {

// Whether `output` can name a file to write: it is no directory, and the
// directory it lies in exists.
bool IsWritablePath(const CString& output);

// Whether `output` names none of `inputs`, which it would replace. `sWhat`
// names the output in the refusal ("Die Auswahldatei", "Der Report").
bool OutputSparesInputs(const CString& output, const XbArray<CString>& inputs, const wchar_t* sWhat);

}  // namespace TestSuite::CLI
