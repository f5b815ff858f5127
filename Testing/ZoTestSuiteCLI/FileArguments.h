// FileArguments: the front end's checks of the files that a tool mode's
// command line names, before anything is read or written: a report that
// must exist, and a file to write that must not be a directory, must lie in
// a directory that exists, and must not replace one of the inputs. Each
// refusal is said in red.
#pragma once

#include "foundation/CString.h"
#include "foundation/XbArray.h"

namespace TestSuite::CLI {

// True if `path` exists; else says "Fehler: Datei ... existiert nicht.".
bool CheckInputExists(const CString& path);

// True if `output` can name a file to write: it is no directory, and the
// directory it lies in exists.
bool CheckWritablePath(const CString& output);

// True unless `output` names the same file as one of `inputs`, which it
// would replace; `what` names the file in the refusal ("Die Auswahldatei").
bool CheckOutputSparesInputs(const CString& output, const XbArray<CString>& inputs, const wchar_t* what);

}  // namespace TestSuite::CLI
