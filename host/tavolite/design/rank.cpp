#include "tavolite/design/rank.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

#include "tavolite/design/lapack.h"

namespace host {

namespace {

constexpr int kMaxIterations = 50;
constexpr double kConverged = 1e-3;
// Below, pivoting may find a part of kNearlyDependent: no part is smaller than the smallest
// singular value, which the iteration finds from above.
constexpr double kDoubtful = 10 * kNearlyDependent;
// Of a combination's coefficients, for columns of norm 1 and a largest coefficient of 1: what is
// below is rounding.
constexpr double kTakesPart = 1e-6;

void ScaleColumns(Triangle& triangle) {
  for (std::size_t j = 0; j < triangle.size; ++j) {
    double* const x = triangle.Column(j);
    double largest = 0.0;
    for (std::size_t i = 0; i <= j; ++i) largest = std::max(largest, std::abs(x[i]));
    if (largest == 0.0) continue;
    double sum = 0.0;
    for (std::size_t i = 0; i <= j; ++i) {
      x[i] /= largest;
      sum += x[i] * x[i];
    }
    for (std::size_t i = 0; i <= j; ++i) x[i] /= std::sqrt(sum);
  }
}

// x becomes R x.
void Multiply(const Triangle& r, std::vector<double>& x) {
  for (std::size_t j = 0; j < r.size; ++j) {
    const double* const column = r.Column(j);
    const double factor = x[j];
    for (std::size_t i = 0; i < j; ++i) x[i] += factor * column[i];
    x[j] = factor * column[j];
  }
}

// x becomes R'x.
void MultiplyTransposed(const Triangle& r, std::vector<double>& x) {
  for (std::size_t j = r.size; j-- > 0;) {
    x[j] = std::inner_product(r.Column(j), r.Column(j) + j + 1, x.begin(), 0.0);
  }
}

// x becomes the solution of R z = x, for the first `size` columns of R.
void Solve(const Triangle& r, std::size_t size, std::vector<double>& x) {
  for (std::size_t j = size; j-- > 0;) {
    const double* const column = r.Column(j);
    x[j] /= column[j];
    for (std::size_t i = 0; i < j; ++i) x[i] -= x[j] * column[i];
  }
}

// x becomes the solution of R'z = x.
void SolveTransposed(const Triangle& r, std::vector<double>& x) {
  for (std::size_t j = 0; j < r.size; ++j) {
    const double* const column = r.Column(j);
    x[j] = (x[j] - std::inner_product(column, column + j, x.begin(), 0.0)) / column[j];
  }
}

// The largest eigenvalue of what `step` does to a vector.
template <class Step>
double LargestEigenvalue(std::size_t size, Step step) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> entry(-1.0, 1.0);
  std::vector<double> x(size);
  std::ranges::generate(x, [&] { return entry(random); });
  double value = 0.0;
  for (int i = 0; i < kMaxIterations; ++i) {
    const double norm = std::sqrt(std::inner_product(x.begin(), x.end(), x.begin(), 0.0));
    const double last = std::exchange(value, norm);
    if (!std::isfinite(norm)) return norm;
    for (double& part : x) part /= norm;
    if (i > 1 && std::abs(value - last) <= kConverged * value) break;
    step(x);
  }
  return value;
}

double LargestSingularValue(const Triangle& r) {
  return std::sqrt(LargestEigenvalue(r.size, [&](std::vector<double>& x) {
    Multiply(r, x);
    MultiplyTransposed(r, x);
  }));
}

double SmallestSingularValue(const Triangle& r) {
  for (std::size_t j = 0; j < r.size; ++j) {
    if (r.Column(j)[j] == 0.0) return 0.0;
  }
  return 1.0 / std::sqrt(LargestEigenvalue(r.size, [&](std::vector<double>& x) {
           SolveTransposed(r, x);
           Solve(r, r.size, x);
         }));
}

using Combination = std::vector<double>;  // coefficients that make the zero vector of the columns

// One combination for each column that pivoting has left with a part of at most `tolerance`.
std::vector<Combination> Combinations(const Triangle& factor,
                                      const std::vector<std::size_t>& pivots, double tolerance) {
  const std::size_t size = factor.size;
  std::size_t rank = 0;
  while (rank < size && std::abs(factor.Column(rank)[rank]) > tolerance) ++rank;
  std::vector<Combination> combinations;
  for (std::size_t k = rank; k < size; ++k) {
    std::vector<double> x(factor.Column(k), factor.Column(k) + rank);
    Solve(factor, rank, x);
    Combination& combination = combinations.emplace_back(size, 0.0);
    for (std::size_t i = 0; i < rank; ++i) combination[pivots[i]] = -x[i];
    combination[pivots[k]] = 1.0;
  }
  return combinations;
}

double LargestPart(const Combination& combination) {
  double largest = 0.0;
  for (const double part : combination) largest = std::max(largest, std::abs(part));
  return largest;
}

// Gauss-Jordan elimination from the last column in `order` to the first: afterwards each
// combination has a column of its own, with all others before it.
std::vector<Dependence> Resolve(std::vector<Combination> combinations,
                                const std::vector<std::size_t>& order) {
  std::vector<std::size_t> own;
  for (auto column = order.rbegin(); column != order.rend(); ++column) {
    const std::size_t first = own.size();
    if (first == combinations.size()) break;
    for (std::size_t k = first; k < combinations.size(); ++k) {
      const double largest = LargestPart(combinations[k]);
      for (double& part : combinations[k]) part /= largest;
    }
    const auto pivot =
        std::max_element(combinations.begin() + static_cast<std::ptrdiff_t>(first),
                         combinations.end(), [&](const Combination& a, const Combination& b) {
                           return std::abs(a[*column]) < std::abs(b[*column]);
                         });
    if (std::abs((*pivot)[*column]) <= kTakesPart) continue;
    std::swap(combinations[first], *pivot);
    for (std::size_t k = 0; k < combinations.size(); ++k) {
      if (k == first) continue;
      const double factor = combinations[k][*column] / combinations[first][*column];
      for (std::size_t i = 0; i < combinations[k].size(); ++i) {
        combinations[k][i] -= factor * combinations[first][i];
      }
      combinations[k][*column] = 0.0;
    }
    own.push_back(*column);
  }
  std::vector<Dependence> dependences;
  for (std::size_t k = 0; k < own.size(); ++k) {
    const double largest = LargestPart(combinations[k]);
    Dependence& dependence = dependences.emplace_back(Dependence{own[k], {}});
    for (const std::size_t column : order) {
      const bool takes_part = std::abs(combinations[k][column]) > kTakesPart * largest;
      if (takes_part && column != own[k]) dependence.others.push_back(column);
    }
  }
  std::ranges::reverse(dependences);
  return dependences;
}

}  // namespace

Rank FindRank(Triangle triangle, const std::vector<std::size_t>& order) {
  Rank rank;
  if (triangle.size == 0) return rank;
  ScaleColumns(triangle);
  const double smallest = SmallestSingularValue(triangle);
  rank.condition = LargestSingularValue(triangle) / smallest;
  if (smallest > kDoubtful) return rank;
  const std::vector<std::size_t> pivots =
      Lapack().FactorPivoted(triangle.size, triangle.values.data());
  rank.dependent = Resolve(Combinations(triangle, pivots, kDependent), order);
  if (rank.dependent.empty()) {
    rank.nearly = Resolve(Combinations(triangle, pivots, kNearlyDependent), order);
  } else {
    rank.condition = std::numeric_limits<double>::infinity();
  }
  return rank;
}

}  // namespace host
