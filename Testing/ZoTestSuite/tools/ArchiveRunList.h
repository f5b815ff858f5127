// ArchiveRunList: the run list of the archive mode, an XML file whose root
// "ArchiveRun" holds one "Run" element per configured run: which build of
// the front end runs which data tree, and into which archive its report is
// filed.
#pragma once

#include "foundation/CString.h"
#include "foundation/XbArray.h"

namespace TestSuite {

// One "Run" entry; every text as the file gives it, empty where the entry
// has no such child.
struct SArchiveRun {
  CString name;           // attribute "name"
  CString BinaryDir;      // directory of the front end's executable
  CString Config;         // "Debug" or "Release"
  CString Platform;       // "Win32" or "x64"
  CString DataDir;        // root data directory of the run
  CString OutDir;         // archive directory
  CString SelectionFile;  // optional selection file
};

// Splits "FILE:NAME" at its last ':' into the run list and the run's name.
// Without a ':' the file is empty and the whole text is the name.
void SplitArchiveRun(const CString& text, CString& file, CString& runName);

// Every "Run" child of the root of `path`, in document order. Of a child
// given twice in one entry the last counts; unknown children are ignored.
// Throws the wide text "XML-Syntax Fehler" (a CString) for a file that does
// not parse or has no "ArchiveRun", and the plain wide character pointers
// "Ungültige Konfiguration" and "Ungültige Platform" for an entry, any
// entry, whose Config or Platform is not one of the two known words.
XbArray<SArchiveRun> ReadArchiveRunList(const CString& path);

// The first entry named exactly `runName`; null if there is none.
const SArchiveRun* FindArchiveRun(const XbArray<SArchiveRun>& runs, const CString& runName);

}  // namespace TestSuite
