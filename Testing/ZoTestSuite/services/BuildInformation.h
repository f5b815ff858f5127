// BuildInformation: from which sources the library was built, as the build
// stored it inside the library, and the per-user working directory of the
// system.
//
// The build keeps its version-control information as 8-bit text resources of
// lines "Key: value" (the blank after the colon is optional; the order is
// free; other lines are ignored). A library built from a git checkout holds
// the source-control form, "PSCMINFOFILE"/"IDR_PSCMINFO"; the working-copy
// form, "SVNINFOFILE"/"IDR_SVNINFO", is read when present but no build here
// writes it. Nothing here fails: what is missing is empty.
#pragma once

#include <memory>
#include <string>

#include "foundation/CString.h"

namespace TestSuite {

struct SSvnInfo {
  CString Path;                 // "Path"
  CString WorkingCopyRootPath;  // "Working Copy Root Path"
  CString URL;                  // "URL"
  CString RepositoryRoot;       // "Repository Root"
  CString Revision;             // "Revision"
  CString LastChangedAuthor;    // "Last Changed Author"
  CString LastChangedRev;       // "Last Changed Rev"
  CString LastChangedDate;      // "Last Changed Date"
};

struct SPscmInfo {
  CString Server;           // "Server": URL of the remote origin, may be empty
  CString Repository;       // "Repository": the checkout's directory name
  CString Branch;           // "Branch"
  CString Changeset;        // "Changeset": number of commits up to HEAD
  CString ChangesetAuthor;  // "ChangesetAuthor": author of HEAD
  CString WorkspacePath;    // "WorkspacePath": top level of the checkout
};

// The records of the library's resources; empty if the resource is absent
// or empty. A present resource always gives a record, whose fields stay
// empty where its key was missing.
std::unique_ptr<SSvnInfo> GetSvnInfo();
std::unique_ptr<SPscmInfo> GetPscmInfo();

// The same from a resource's text. Each line is split at its first colon:
// the key is what stands in front of it, compared exactly (letter case and
// blanks count); the value is the rest with white space trimmed at both
// ends. Lines without a colon and unknown keys are skipped; of a key given
// twice the last value stands. An empty text gives the empty pointer.
std::unique_ptr<SSvnInfo> ParseSvnInfo(const std::string& text);
std::unique_ptr<SPscmInfo> ParsePscmInfo(const std::string& text);

// The per-user directory of the system: the application-data directory, then
// "ZoTestSuite/", then "Orvane/", each level made if missing. The path ends
// in '/' and is returned even if a level could not be made.
CString GetLocalTestSuiteDir();

// The bytes of the text resource `name` of `type` compiled into this
// library; empty if there is none.
std::string LoadTextResource(const CString& name, const CString& type);

}  // namespace TestSuite
