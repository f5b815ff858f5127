// WordCountTest: an example test class. Each "*.txt" file of the class's
// data directory is one subtest: its words are counted and compared with
// the number in the reference file of the same name ending in ".count".
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>

#include "ZoUnitTest.h"

class WordCountTest : public ZoUnitTestFileBased, public IUnitTestRecreate {
  XB_DECLARE_DYNCREATE(WordCountTest)

  WordCountTest() : ZoUnitTestFileBased(L"*.txt") {}

  // Reference data can be renewed for every subtest whose text is readable.
  bool CanRecreate(unsigned int subtest) override { return countWords(GetFilePath(subtest)).has_value(); }
  bool Recreate(unsigned int subtest) override {
    const std::optional<long> words = countWords(GetFilePath(subtest));
    if (!words) return false;
    std::ofstream(referencePath(subtest).ToUtf8()) << *words << '\n';
    return true;
  }

 protected:
  EResult OnRunSubtest(unsigned int index) override {
    const std::optional<long> words = countWords(GetFilePath(index));
    const std::optional<long> expected = readReference(index);
    if (!words || !expected) {
      Error(L"cannot read %s or its reference", GetFilenames()[index]);
      return eDataError;
    }
    Info(L"%s: %d words", GetFilenames()[index], *words);
    if (*words != *expected) {
      Error(L"expected %d words, counted %d", *expected, *words);
      return eFailure;
    }
    return eSuccess;
  }

 private:
  CString referencePath(unsigned int index) const {
    CString path = GetFilePath(index);
    return path.Left(path.GetLength() - 4) + L".count";  // "x.txt" -> "x.count"
  }

  std::optional<long> readReference(unsigned int index) const {
    std::ifstream in(referencePath(index).ToUtf8());
    long count = 0;
    if (!(in >> count)) return std::nullopt;
    return count;
  }

  static std::optional<long> countWords(const CString& path) {
    std::ifstream in(path.ToUtf8());
    if (!in) return std::nullopt;
    return std::distance(std::istream_iterator<std::string>(in), std::istream_iterator<std::string>());
  }
};

XB_IMPLEMENT_DYNCREATE(WordCountTest, ZoUnitTestFileBased);
