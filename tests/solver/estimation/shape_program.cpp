// Solves a problem with as many observations and coefficients as the arguments say.
#include <cstdio>
#include <cstdlib>

#include "estimation/least_squares.h"
#include "tests/solver/estimation/problem.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const auto n = static_cast<std::size_t>(std::atoi(argv[1]));
  const auto p = static_cast<std::size_t>(std::atoi(argv[2]));
  std::vector<std::vector<double>> columns(p, std::vector<double>(n, 1.0));
  linfit::RegressionResult result;
  const linfit::Failure failure =
      linfit::SolveLeastSquares(linfit::Problem(columns, std::vector<double>(n, 1.0)), result,
                                [](std::string_view /*line*/) {});
  std::puts(failure ? failure->c_str() : "returned");
  return 0;
}
