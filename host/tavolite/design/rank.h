// Rank and condition of a design, from its triangular factor.
#pragma once

#include <cstddef>
#include <vector>

#include "tavolite/design/triangle.h"

namespace host {

// A column that is a linear combination of others: of none when it is zero.
struct Dependence {
  std::size_t column = 0;
  std::vector<std::size_t> others;  // in the order that FindRank was given
};

// A column's part that the other columns leave over, over the column's norm: up to the first it is
// taken for a combination of them, up to the second for nearly one. The second is that of R's lm;
// data have up to ten digits or so, and designs between the two can be solved.
inline constexpr double kDependent = 1e-10;
inline constexpr double kNearlyDependent = 1e-7;

struct Rank {
  // Largest over smallest singular value of the columns scaled to norm 1, to about two digits;
  // infinite when a column is dependent.
  double condition = 1.0;
  std::vector<Dependence> dependent;
  std::vector<Dependence> nearly;  // empty when there are dependent ones
};

// By QR with column pivoting (Businger and Golub, Numerische Mathematik 7, 1965) where the
// condition number leaves the rank in doubt. Each dependence is stated for the last column that
// takes part in it; `order` has the columns, those that are kept sooner first.
Rank FindRank(Triangle triangle, const std::vector<std::size_t>& order);

}  // namespace host
