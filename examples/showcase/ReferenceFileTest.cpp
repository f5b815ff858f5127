#include "ReferenceFileTest.h"

#include "TextFiles.h"

using namespace Showcase;

ReferenceFileTest::ReferenceFileTest(const CString& inputWildcard, const wchar_t* referenceExtension)
    : ZoUnitTestFileBased(inputWildcard), m_szReferenceExtension(referenceExtension) {}

CString ReferenceFileTest::GetRecreateDescription(unsigned int subtest) const {
  return FormatString(L"writes %s from %s", GetReferenceName(subtest), GetFilenames()[subtest]);
}

bool ReferenceFileTest::CanRecreate(unsigned int subtest) { return computeFor(subtest).has_value(); }

bool ReferenceFileTest::Recreate(unsigned int subtest) {
  const std::optional<std::string> output = computeFor(subtest);
  return output && WriteTextFile(ReplaceExtension(GetFilePath(subtest), m_szReferenceExtension), *output);
}

ZoUnitTest::EResult ReferenceFileTest::OnRunSubtest(unsigned int index) {
  const std::optional<std::string> output = computeFor(index);
  if (!output) {
    Error(L"%s cannot be read or understood", GetFilenames()[index]);
    return eDataError;
  }
  const std::optional<std::string> reference = ReadReference(index);
  if (!reference) {
    Error(L"the reference %s is missing (--recreate writes it)", GetReferenceName(index));
    return eDataError;
  }
  const std::size_t line = FirstDifferentLine(*output, *reference);
  if (line != 0) {
    Error(L"the output differs from %s in line %u", GetReferenceName(index), static_cast<unsigned int>(line));
    return eDifferentOutput;
  }
  return eSuccess;
}

std::optional<std::string> ReferenceFileTest::ReadInput(unsigned int subtest) const {
  return ReadTextFile(GetFilePath(subtest));
}

std::optional<std::string> ReferenceFileTest::ReadReference(unsigned int subtest) const {
  return ReadTextFile(ReplaceExtension(GetFilePath(subtest), m_szReferenceExtension));
}

CString ReferenceFileTest::GetReferenceName(unsigned int subtest) const {
  return ReplaceExtension(GetFilenames()[subtest], m_szReferenceExtension);
}

std::optional<std::string> ReferenceFileTest::computeFor(unsigned int subtest) const {
  const std::optional<std::string> input = ReadInput(subtest);
  if (!input) return std::nullopt;
  return Compute(*input);
}

XB_IMPLEMENT_DYNCREATE(ReferenceFileTest, ZoUnitTestFileBased);
