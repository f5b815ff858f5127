// tools_DuplicateTree: data trees for the duplicate detection tests, with
// the file-based classes of cli_ScriptedClasses (CliScripted, CliSecond:
// every "*.case" file is a case) and the listed classes of
// discovery_TestClasses (Alpha ...: not file-based), and files of chosen
// creation order.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "TempDirectory.h"

// Loads both test libraries once for the whole process. Gives an error
// text, empty on success.
std::string LoadDuplicateTestClasses();

class DuplicateTree {
 public:
  // The root, ending in '/'.
  const CString& Path() const { return m_dir.Path(); }
  // Writes a new file `relative` below the root (directories made as
  // needed) and gives its path. An existing file is removed first, so that
  // the file is born anew.
  CString Write(const CString& relative, const std::string& bytes) const;
  // Writes `relative` so that its creation time text is later than that
  // of the file `older`: written again until the clock has moved on.
  CString WriteYounger(const CString& relative, const std::string& bytes, const CString& older) const;
  // Writes all files so that their creation time texts are equal: written
  // again until no second boundary lies between them.
  void WriteInOneSecond(const std::vector<std::pair<CString, std::string>>& files) const;

  // Makes `relative` a FIFO, which exists yet cannot be read as a file,
  // and gives its path; empty if the system refuses.
  CString MakeFifo(const CString& relative) const;
  // Makes `relative` a symbolic link to nothing, which is listed yet does
  // not exist, and gives its path.
  CString MakeDanglingLink(const CString& relative) const;

  // The creation time of a file as the duplicate detection shows it.
  static CString TimeText(const CString& path);

 private:
  TempDirectory m_dir;
};
