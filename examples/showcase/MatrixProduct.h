// MatrixProduct: the code under test of MatrixProductTest. It reads two
// matrices and writes their product.
#pragma once

#include <string>
#include <string_view>

namespace Showcase {

// The product A times B of the two matrices in `text`, one row a line,
// numbers separated by one blank. In `text` a matrix is a block of lines,
// one row a line, numbers separated by blanks; one or more blank lines end
// the block, and lines that begin with '#' are skipped. What cannot be
// multiplied gives one line that begins with "error: " and says why: not
// exactly two matrices, rows of different lengths, a word that is no
// number, or sizes that do not fit.
std::string MultiplyMatrices(std::string_view text);

}  // namespace Showcase
