// Solves a problem with as many observations and coefficients as the arguments say.
#include <cstdio>
#include <cstdlib>

#include "estimation/least_squares.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  linfit::RegressionData data;
  data.n = std::atoi(argv[1]);
  data.p = std::atoi(argv[2]);
  data.ResponseVector.assign(linfit::ArraySize(data.n), 1.0);
  data.DesignMatrix.assign(linfit::ArraySize(data.n) * linfit::ArraySize(data.p), 1.0);
  linfit::RegressionResult result;
  const linfit::Failure failure =
      linfit::SolveLeastSquares(data, result, [](std::string_view /*line*/) {});
  std::puts(failure ? failure->c_str() : "returned");
  return 0;
}
