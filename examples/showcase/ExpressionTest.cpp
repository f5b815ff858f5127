// ExpressionTest: each "*.expr" file of the class's directory is a list of
// expressions with the value each must have, one "EXPRESSION = VALUE" a
// line, where VALUE "error" means that the evaluator must refuse the
// expression. Lines that begin with '#' are comments. The file carries its
// own expectations, so the class has no reference data to renew.
#include <cmath>

#include "Expression.h"
#include "TextFiles.h"

class ExpressionTest : public ZoUnitTestFileBased {
  XB_DECLARE_DYNCREATE(ExpressionTest)

  ExpressionTest() : ZoUnitTestFileBased(L"*.expr") {}

 protected:
  EResult OnRunSubtest(unsigned int index) override {
    const std::optional<std::string> text = Showcase::ReadTextFile(GetFilePath(index));
    if (!text) return eDataError;
    unsigned int lineNumber = 0, wrong = 0;
    for (const std::string_view line : Showcase::SplitLines(*text)) {
      ++lineNumber;
      const std::string_view content = Showcase::Trim(line);
      if (content.empty() || content.front() == '#') continue;
      const std::size_t equals = content.rfind('=');
      if (equals == std::string_view::npos) {
        Error(L"line %u: no '=' before the expected value", lineNumber);
        return eDataError;
      }
      if (!checkLine(lineNumber, content.substr(0, equals), Showcase::Trim(content.substr(equals + 1)))) ++wrong;
    }
    return wrong == 0 ? eSuccess : eFailure;
  }

 private:
  // One expression against its expected value; reports a mismatch.
  bool checkLine(unsigned int lineNumber, std::string_view expression, std::string_view expected) const {
    const Showcase::SEvaluation result = Showcase::Evaluate(expression);
    const CString shown = CString::FromUtf8(Showcase::Trim(expression));
    if (expected == "error") {
      if (!result.bOk) return true;
      Error(L"line %u: %s gave %S instead of an error", lineNumber, shown, Showcase::FormatNumber(result.dValue));
      return false;
    }
    const std::optional<double> value = Showcase::ParseNumber(expected);
    if (!result.bOk) {
      Error(L"line %u: %s failed: %S", lineNumber, shown, result.sError);
      return false;
    }
    if (!value || std::fabs(result.dValue - *value) > 1e-9 * std::fmax(1.0, std::fabs(*value))) {
      Error(L"line %u: %s gave %S, expected %S", lineNumber, shown, Showcase::FormatNumber(result.dValue), expected);
      return false;
    }
    return true;
  }
};

XB_IMPLEMENT_DYNCREATE(ExpressionTest, ZoUnitTestFileBased);
