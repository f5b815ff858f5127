// ZoUnitTestFileBased: a test class whose subtests are the data files of
// its directory, one subtest per file.
//
// The files are the regular files directly in the data directory whose
// names match the wildcard given at construction ('*' any run of
// characters, '?' one character, all others themselves, case-sensitive),
// sorted by name in UTF-16 order. A subtest's name is its file's name.
// A class derived from it implements OnRunSubtest and finds the file of a
// subtest with GetFilePath.
#pragma once

#include "ZoUnitTest.h"

class ZoUnitTestFileBased : public ZoUnitTest {
  XB_DECLARE_DYNCREATE(ZoUnitTestFileBased)

  explicit ZoUnitTestFileBased(const CString& wildcard);
  ~ZoUnitTestFileBased() override;

  // The names of the data files, without directory, one per subtest in
  // subtest order; filled by InitSubtests.
  const XbArray<CString>& GetFilenames() const { return m_filenames; }
  const CString& GetWildcard() const { return m_sWildcard; }

 protected:
  void OnInitSubtests(XbArray<CString>& names) override;
  // The data directory, a separator and the file name of subtest `index`;
  // throws std::out_of_range for an index beyond the list.
  CString GetFilePath(unsigned int index) const;

 private:
  CString m_sWildcard;
  XbArray<CString> m_filenames;
};
