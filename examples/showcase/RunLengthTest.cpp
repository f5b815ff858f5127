// RunLengthTest: each "*.txt" file of the class's directory is a text to
// compress. Its runs, written out, must equal the reference file of the
// same name ending in ".rle", and the runs read back from that reference
// must give the text again.
#include "ReferenceFileTest.h"
#include "RunLength.h"
#include "TextFiles.h"

class RunLengthTest : public ReferenceFileTest {
  XB_DECLARE_DYNCREATE(RunLengthTest)

  RunLengthTest() : ReferenceFileTest(L"*.txt", L".rle") {}

 protected:
  std::optional<std::string> Compute(const std::string& input) const override {
    return Showcase::WriteRuns(Showcase::EncodeRuns(input));
  }

  EResult OnRunSubtest(unsigned int index) override {
    const EResult encoded = ReferenceFileTest::OnRunSubtest(index);
    if (encoded != eSuccess) return encoded;
    const std::optional<std::vector<Showcase::SRun>> runs = Showcase::ReadRuns(ReadReference(index).value_or(""));
    if (!runs) {
      Error(L"%s is not a list of runs", GetReferenceName(index));
      return eDataError;
    }
    const std::string decoded = Showcase::DecodeRuns(*runs);
    Info(L"%S in %S", Showcase::Counted(decoded.size(), "byte"), Showcase::Counted(runs->size(), "run"));
    if (decoded != ReadInput(index).value_or("")) {
      Error(L"decoding %s does not give %s again", GetReferenceName(index), GetFilenames()[index]);
      return eFailure;
    }
    return eSuccess;
  }
};

XB_IMPLEMENT_DYNCREATE(RunLengthTest, ReferenceFileTest);
