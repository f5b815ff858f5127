// ReferenceFileTest: the common base of the showcase classes that compare
// what they compute from an input file with a reference file beside it
// ("x.in" -> "x.ref") and can write that reference anew.
//
// A derived class names the wildcard of its inputs and the extension of its
// references, and turns the text of one input into the text of its output.
// The base reads, compares, reports the first differing line, and implements
// IUnitTestRecreate, so that a run with --recreate renews every reference
// after an intended change of the computation.
#pragma once

#include <optional>
#include <string>

#include "ZoUnitTest.h"

class ReferenceFileTest : public ZoUnitTestFileBased, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(ReferenceFileTest)

  ReferenceFileTest(const CString& inputWildcard, const wchar_t* referenceExtension);

  CString GetRecreateDescription(unsigned int subtest) const override;
  bool CanRecreate(unsigned int subtest) override;
  bool Recreate(unsigned int subtest) override;

 protected:
  // The output for one input. Nothing if the input cannot be understood at
  // all; an input that the computation rejects on purpose should give the
  // rejection as text, so that the reference pins it down.
  virtual std::optional<std::string> Compute(const std::string& input) const = 0;

  // Computes, compares with the reference and reports the first line that
  // differs. A derived class may add checks of its own after this.
  EResult OnRunSubtest(unsigned int index) override;

  // The input and the reference of one subtest; nothing if unreadable.
  std::optional<std::string> ReadInput(unsigned int subtest) const;
  std::optional<std::string> ReadReference(unsigned int subtest) const;
  // The file name of the reference, without directory.
  CString GetReferenceName(unsigned int subtest) const;

 private:
  std::optional<std::string> computeFor(unsigned int subtest) const;

  const wchar_t* m_szReferenceExtension;
};
