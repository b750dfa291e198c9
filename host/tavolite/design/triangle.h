// The triangular factor R of a design X = QR, from blocks of its rows.
#pragma once

#include <cstddef>
#include <stop_token>
#include <vector>

#include "tavolite/design/design_rows.h"

namespace host {

// A square matrix that is upper triangular, column-major.
struct Triangle {
  std::size_t size = 0;
  std::vector<double> values;  // size x size

  [[nodiscard]] double* Column(std::size_t j) { return values.data() + j * size; }
  [[nodiscard]] const double* Column(std::size_t j) const { return values.data() + j * size; }
};

// What a design comes down to. Column j of `triangle` has the norm of column j of the design; the
// last one is a column of ones, which the design need not have.
struct ReducedDesign {
  Triangle triangle;
  bool has_ones = false;  // one of the design's own columns is a column of ones
};

// Householder QR of the rows read so far and the next block, one block after another (Golub and Van
// Loan, Matrix Computations, 5.2 and 6.5). Throws std::bad_alloc, std::system_error when LAPACK is
// needed and not there, and what reading throws.
// After `stop` it returns early.
ReducedDesign ReduceRows(DesignRows& rows, const std::stop_token& stop);

}  // namespace host
