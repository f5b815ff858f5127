// CSelectionStore: a persisted statement of which test cases are wanted,
// with a default for the whole file and one per class, read from and
// written to a selection file, and asked case by case during collection.
//
// The file is XML with the root Config:
//   <?xml version="1.0" encoding='ISO-8859-1'?>
//   <Config version="1.0">
//   	<Selection default="none">
//   		<UnitTest name="Geometry" default="all">
//   			<TestCase name="Torus" select="false"/>
//   		</UnitTest>
//   	</Selection>
//   </Config>
// Element names below Selection are exact; attribute names are found
// without regard to case; "all" and "true" are exact, every other value
// means none and false.
#pragma once

#include <memory>

#include "foundation/CString.h"
#include "foundation/XbArray.h"
#include "foundation/XbMap.h"

namespace TestSuite {

class CSelectionStore {
 public:
  enum EDefault : unsigned int { All = 0, None = 1 };

  struct SData {
    struct SCaseSelection {
      CString sName;
      bool bSelect = false;
    };
    struct SUnitTestSelection {
      CString sName;
      EDefault eDefault = None;  // for the class's cases the file does not list
      XbArray<SCaseSelection> cases;
    };

    EDefault eDefault = None;  // for the classes the file does not list
    XbArray<SUnitTestSelection> unitTests;
  };

  // Takes the data (null: a store that selects nothing). Where the data name
  // a class or a case twice, the later entry counts.
  explicit CSelectionStore(std::unique_ptr<SData> data);
  CSelectionStore(CSelectionStore&& other) noexcept;
  CSelectionStore& operator=(CSelectionStore&& other) noexcept;
  ~CSelectionStore();

  // An explicit case entry first, then the class's default, then the
  // file's. Without data nothing is selected.
  bool IsSelected(const CString& className, const CString& caseName) const;
  const SData* GetData() const { return m_data.get(); }

  // Null for a file that is missing, of size zero, does not parse, or holds
  // an element of another name below Selection or below a UnitTest. Never
  // throws and prints nothing.
  static std::unique_ptr<SData> Read(const CString& path);
  // Creates or replaces the file. A case name is escaped for XML, a class
  // name is written as it stands. Characters beyond ISO-8859-1 become '?'.
  // Fails quietly, possibly leaving a partial file.
  static void Write(const SData& data, const CString& path);

 private:
  std::unique_ptr<SData> m_data;
  XbMap<CString, EDefault> m_classDefaults;
  XbMap<CString, bool> m_caseSelections;  // key: class name ":" case name
};

}  // namespace TestSuite
