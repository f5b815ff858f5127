// Expression: the code under test of ExpressionTest, a tiny evaluator of
// arithmetic: numbers, + - * /, unary signs and parentheses, with the usual
// precedence and left-to-right order.
#pragma once

#include <string>
#include <string_view>

namespace Showcase {

struct SEvaluation {
  bool bOk = false;
  double dValue = 0.0;
  std::string sError;  // why it failed; empty when bOk
};

// Evaluates `text`. Fails on anything else than the grammar above, on an
// empty text and on a division by zero.
SEvaluation Evaluate(std::string_view text);

}  // namespace Showcase
