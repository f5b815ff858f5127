#include "Expression.h"

#include <cctype>
#include <charconv>

#include "TextFiles.h"

namespace Showcase {

namespace {

// A recursive-descent parser: expression = term {(+|-) term},
// term = factor {(*|/) factor}, factor = (+|-) factor | number | "(" expression ")".
// The first error stops it; later steps then do nothing.
class CParser {
 public:
  explicit CParser(std::string_view text) : m_text(text) {}

  SEvaluation Run() {
    const double value = expression();
    skipBlanks();
    if (m_error.empty() && m_at < m_text.size()) fail("unexpected " + Quoted(m_text.substr(m_at, 1)));
    if (!m_error.empty()) return {false, 0.0, m_error};
    return {true, value, {}};
  }

 private:
  double expression() {
    double value = term();
    for (char op = peek(); m_error.empty() && (op == '+' || op == '-'); op = peek()) {
      ++m_at;
      const double right = term();
      value = op == '+' ? value + right : value - right;
    }
    return value;
  }

  double term() {
    double value = factor();
    for (char op = peek(); m_error.empty() && (op == '*' || op == '/'); op = peek()) {
      ++m_at;
      const double right = factor();
      if (op == '/' && right == 0.0 && m_error.empty()) fail("division by zero");
      value = op == '*' ? value * right : value / right;
    }
    return value;
  }

  double factor() {
    const char c = peek();
    if (!m_error.empty()) return 0.0;
    if (c == '+' || c == '-') {
      ++m_at;
      const double value = factor();
      return c == '-' ? -value : value;
    }
    if (c == '(') {
      ++m_at;
      const double value = expression();
      if (peek() != ')') fail("missing ')'");
      ++m_at;
      return value;
    }
    return number();
  }

  double number() {
    double value = 0.0;
    const char* begin = m_text.data() + m_at;
    const bool digitFirst = m_at < m_text.size() && (std::isdigit(static_cast<unsigned char>(*begin)) || *begin == '.');
    const auto [end, error] = std::from_chars(begin, m_text.data() + m_text.size(), value);
    if (!digitFirst || error != std::errc()) {
      fail(m_at < m_text.size() ? "unexpected " + Quoted(m_text.substr(m_at, 1)) : "unexpected end");
      return 0.0;
    }
    m_at += static_cast<std::size_t>(end - begin);
    return value;
  }

  // The next character after blanks, '\0' at the end.
  char peek() {
    skipBlanks();
    return m_at < m_text.size() ? m_text[m_at] : '\0';
  }

  void skipBlanks() {
    while (m_at < m_text.size() && std::isspace(static_cast<unsigned char>(m_text[m_at]))) ++m_at;
  }

  void fail(std::string error) {
    if (m_error.empty()) m_error = std::move(error) + " at column " + std::to_string(m_at + 1);
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  std::string m_error;
};

}  // namespace

SEvaluation Evaluate(std::string_view text) { return CParser(text).Run(); }

}  // namespace Showcase
