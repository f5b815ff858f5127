// DuplicateSets: the data files of one file-based test class that have the
// same bytes, grouped into sets with the file to keep in front.
#pragma once

#include "ZoTestSuiteTree.h"
#include "foundation/ZoMurmurHash3.h"

namespace TestSuite {

// One examined data file.
struct SDuplicateFile {
  CString sClass;                // class name
  CString sFile;                 // as the class listed it
  CString sPath;                 // DataDir, a separator and sFile ("…/Class//file")
  ZoMurmurHash3::S128 checksum;  // of all the file's bytes, seed 0
  CString sTime;                 // creation time, local, "%Y.%m.%d-%H:%M:%S"
};

// At least two files of equal checksum: the one to keep first, the others
// behind it in the order in which the class listed them.
using SDuplicateSet = XbArray<SDuplicateFile>;

// Examines the data files of `unitTest` and appends its duplicate sets to
// `sets`, in the order of each set's first listed file. Equal checksums
// count as equal content. The keeper of a set is the file with the
// smallest time text, the first listed among equals. A listed file that is
// missing, or larger than 0xFFFFFFFF bytes, is passed over silently; one
// that cannot be read prints "Fehler während Einlesen von Datei %s\n".
// A class that is not file-based has nothing to compare. Gives the number
// of redundant files: over all sets, their size minus one.
unsigned int FindDuplicateSets(const SUnitTest& unitTest, XbArray<SDuplicateSet>& sets);

}  // namespace TestSuite
