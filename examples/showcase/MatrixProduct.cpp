#include "MatrixProduct.h"

#include <variant>
#include <vector>

#include "TextFiles.h"

namespace Showcase {

namespace {

using Matrix = std::vector<std::vector<double>>;
using ParseResult = std::variant<std::vector<Matrix>, std::string>;  // the matrices, or an error

std::string sizeOf(const Matrix& m) { return std::to_string(m.size()) + "x" + std::to_string(m.front().size()); }

// Adds one line to the matrices; an error text if it cannot.
std::string addRow(std::string_view line, std::size_t lineNumber, bool newBlock, std::vector<Matrix>& matrices) {
  std::vector<double> row;
  for (const std::string_view word : SplitWords(line)) {
    const std::optional<double> value = ParseNumber(word);
    if (!value) return "line " + std::to_string(lineNumber) + ": " + Quoted(word) + " is not a number";
    row.push_back(*value);
  }
  if (newBlock) matrices.emplace_back();
  Matrix& matrix = matrices.back();
  if (!matrix.empty() && matrix.front().size() != row.size())
    return "line " + std::to_string(lineNumber) + ": " + std::to_string(row.size()) + " numbers in a row of " +
           std::to_string(matrix.front().size());
  matrix.push_back(std::move(row));
  return {};
}

ParseResult parse(std::string_view text) {
  std::vector<Matrix> matrices;
  bool newBlock = true;
  std::size_t lineNumber = 0;
  for (const std::string_view line : SplitLines(text)) {
    ++lineNumber;
    const std::string_view content = Trim(line);
    if (content.empty()) newBlock = true;
    if (content.empty() || content.front() == '#') continue;
    std::string error = addRow(content, lineNumber, newBlock, matrices);
    if (!error.empty()) return error;
    newBlock = false;
  }
  if (matrices.size() != 2) return "expected 2 matrices, found " + std::to_string(matrices.size());
  return matrices;
}

std::string multiply(const Matrix& a, const Matrix& b) {
  if (a.front().size() != b.size()) return "error: " + sizeOf(a) + " times " + sizeOf(b) + " does not fit\n";
  std::string text;
  for (const std::vector<double>& row : a) {
    for (std::size_t column = 0; column < b.front().size(); ++column) {
      double sum = 0.0;
      for (std::size_t k = 0; k < row.size(); ++k) sum += row[k] * b[k][column];
      if (column != 0) text += ' ';
      text += FormatNumber(sum);
    }
    text += "\n";
  }
  return text;
}

}  // namespace

std::string MultiplyMatrices(std::string_view text) {
  const ParseResult parsed = parse(text);
  if (const std::string* error = std::get_if<std::string>(&parsed)) return "error: " + *error + "\n";
  const std::vector<Matrix>& matrices = std::get<std::vector<Matrix>>(parsed);
  return multiply(matrices[0], matrices[1]);
}

}  // namespace Showcase
