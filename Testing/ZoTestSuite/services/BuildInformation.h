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
#include <span>
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

// One field of a build-information record with its names wherever it
// appears: the key in the resource text, the element of the XML report
// (which is also the name of its property in the JUnit report) and the label
// in the HTML report's build table. A field without an element is read from
// the resource only.
template <typename TRecord>
struct SBuildInfoField {
  CString TRecord::*pField;
  const char* szKey;
  const char* szElement;   // null: in no report
  const wchar_t* szLabel;  // null: not in the HTML report
  bool bJUnitProperty;
};

// The fields of a record, in the order in which the reports list them.
inline const SBuildInfoField<SSvnInfo> c_SvnInfoFields[] = {
    {&SSvnInfo::URL, "URL", "SvnURL", L"SVN URL:", true},
    {&SSvnInfo::Revision, "Revision", "SvnRevision", L"SVN Revision", true},
    {&SSvnInfo::WorkingCopyRootPath, "Working Copy Root Path", "SvnWorkingCopyRootPath", L"SVN Working Copy:", false},
    {&SSvnInfo::LastChangedAuthor, "Last Changed Author", "SvnLastChangedAuthor", L"SVN Last Changed Author:", false},
    {&SSvnInfo::LastChangedRev, "Last Changed Rev", "SvnLastChangedRev", L"SVN Last Changed Rev:", false},
    {&SSvnInfo::LastChangedDate, "Last Changed Date", "SvnLastChangedDate", L"SVN Last Changed Date:", false},
    {&SSvnInfo::Path, "Path", nullptr, nullptr, false},
    {&SSvnInfo::RepositoryRoot, "Repository Root", nullptr, nullptr, false},
};
inline const SBuildInfoField<SPscmInfo> c_PscmInfoFields[] = {
    {&SPscmInfo::Server, "Server", "PscmServer", L"PSCM Server:", true},
    {&SPscmInfo::Repository, "Repository", "PscmRepository", L"PSCM Repository:", true},
    {&SPscmInfo::Branch, "Branch", "PscmBranch", L"PSCM Branch:", true},
    {&SPscmInfo::Changeset, "Changeset", "PscmChangeset", L"PSCM Changeset:", true},
    {&SPscmInfo::ChangesetAuthor, "ChangesetAuthor", "PscmChangesetAuthor", L"PSCM Changeset Author:", true},
    {&SPscmInfo::WorkspacePath, "WorkspacePath", "PscmWorkspacePath", L"PSCM Workspace Path:", true},
};

template <typename TRecord>
std::span<const SBuildInfoField<TRecord>> BuildInfoFields();
template <>
inline std::span<const SBuildInfoField<SSvnInfo>> BuildInfoFields<SSvnInfo>() {
  return c_SvnInfoFields;
}
template <>
inline std::span<const SBuildInfoField<SPscmInfo>> BuildInfoFields<SPscmInfo>() {
  return c_PscmInfoFields;
}

// Calls fn(field, value) for each field of `record`, in the order of its
// table; nothing if there is no record.
template <typename TRecord, typename Fn>
void ForEachBuildInfoField(const TRecord* record, Fn&& fn) {
  if (!record) return;
  for (const SBuildInfoField<TRecord>& field : BuildInfoFields<TRecord>()) fn(field, record->*field.pField);
}

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
