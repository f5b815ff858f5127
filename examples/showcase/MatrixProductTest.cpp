// MatrixProductTest: each "*.in" file of the class's directory holds two
// matrices; their product by MultiplyMatrices must equal the reference file
// of the same name ending in ".ref".
#include "MatrixProduct.h"
#include "ReferenceFileTest.h"

class MatrixProductTest : public ReferenceFileTest {
  XB_DECLARE_DYNCREATE(MatrixProductTest)

  MatrixProductTest() : ReferenceFileTest(L"*.in", L".ref") {}

 protected:
  std::optional<std::string> Compute(const std::string& input) const override {
    return Showcase::MultiplyMatrices(input);
  }
};

XB_IMPLEMENT_DYNCREATE(MatrixProductTest, ReferenceFileTest);
