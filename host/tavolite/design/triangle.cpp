#include "tavolite/design/triangle.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "tavolite/design/lapack.h"

namespace host {

namespace {

// Up to here the work takes no longer than loading LAPACK.
constexpr double kSmallWork = 1e7;  // floating-point operations
constexpr std::size_t kRowsPerBlock = 2048;
constexpr double kOneTolerance = 1e-10;  // the solver's, for a column of ones

// Column-major rows that are brought to triangular form at the top.
struct Stack {
  std::size_t ld = 0;
  std::size_t columns = 0;
  std::vector<double> values;

  [[nodiscard]] double* Column(std::size_t j) { return values.data() + j * ld; }
};

double Norm(const double* x, std::size_t count) {
  double largest = 0.0;
  for (std::size_t i = 0; i < count; ++i) largest = std::max(largest, std::abs(x[i]));
  if (largest == 0.0) return 0.0;
  double sum = 0.0;
  for (std::size_t i = 0; i < count; ++i) sum += (x[i] / largest) * (x[i] / largest);
  return largest * std::sqrt(sum);
}

void Householder(Stack& stack, std::size_t rows) {
  for (std::size_t j = 0; j < std::min(stack.columns, rows); ++j) {
    double* const x = stack.Column(j) + j;
    const std::size_t below = rows - j - 1;
    const double norm = Norm(x + 1, below);
    if (norm == 0.0) continue;
    const double beta = -std::copysign(std::hypot(x[0], norm), x[0]);
    const double tau = (beta - x[0]) / beta;
    const double pivot = x[0] - beta;
    for (std::size_t i = 1; i <= below; ++i) x[i] /= pivot;
    x[0] = beta;
    for (std::size_t k = j + 1; k < stack.columns; ++k) {
      double* const y = stack.Column(k) + j;
      double product = y[0];
      for (std::size_t i = 1; i <= below; ++i) product += x[i] * y[i];
      product *= tau;
      y[0] -= product;
      for (std::size_t i = 1; i <= below; ++i) y[i] -= product * x[i];
    }
  }
}

// What is left below the diagonal are the reflections.
void KeepTriangle(Stack& stack) {
  for (std::size_t j = 0; j < stack.columns; ++j) {
    std::fill_n(stack.Column(j) + j + 1, stack.columns - std::min(stack.columns, j + 1), 0.0);
  }
}

// Of the data columns; the added one is the last.
void FindOnes(Stack& stack, std::size_t first, std::size_t count, std::vector<bool>& is_one) {
  for (std::size_t j = 0; j + 1 < stack.columns; ++j) {
    const double* const x = stack.Column(j) + first;
    is_one[j] = is_one[j] && std::all_of(x, x + count, [](double value) {
                  return std::abs(value - 1.0) <= kOneTolerance;
                });
  }
}

Stack StackFor(const DesignRows& rows) {
  Stack stack;
  stack.columns = rows.Columns() + 1;
  const std::size_t block = std::max(kRowsPerBlock, 4 * stack.columns);
  stack.ld = std::max(stack.columns, std::min(rows.Rows(), stack.columns + block));
  stack.values.assign(stack.ld * stack.columns, 0.0);
  return stack;
}

}  // namespace

ReducedDesign ReduceRows(DesignRows& rows, const std::stop_token& stop) {
  Stack stack = StackFor(rows);
  const std::size_t size = stack.columns;
  std::optional<Lapack> lapack;
  if (2.0 * static_cast<double>(rows.Rows() * size * size) > kSmallWork) lapack.emplace();
  std::vector<bool> is_one(size, true);
  is_one.back() = false;
  std::size_t first = 0;
  std::size_t top = 0;  // rows that the triangle takes
  while (first < rows.Rows() && !stop.stop_requested()) {
    const std::size_t count = std::min(rows.Rows() - first, stack.ld - top);
    rows.Read(first, count, stack.values.data() + top, stack.ld);
    std::fill_n(stack.Column(size - 1) + top, count, 1.0);
    FindOnes(stack, top, count, is_one);
    if (lapack) {
      lapack->FactorQr(top + count, size, stack.values.data(), stack.ld);
    } else {
      Householder(stack, top + count);
    }
    KeepTriangle(stack);
    first += count;
    top = size;
  }
  ReducedDesign design{{size, std::vector<double>(size * size)},
                       std::ranges::find(is_one, true) != is_one.end()};
  for (std::size_t j = 0; j < size; ++j) {
    std::copy_n(stack.Column(j), j + 1, design.triangle.Column(j));
  }
  return design;
}

}  // namespace host
