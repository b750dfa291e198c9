#include "numerics/log_gamma.h"

#include <cmath>

#include "numerics/polynomial.h"

namespace linfit {

namespace {

// x < 1.5, in x + 1 or x.
constexpr double kNearNumerator[] = {3.13060547623, 11.1667541262, -21.9698958928, -24.4387534237,
                                     -2.66685511495};
constexpr double kNearDenominator[] = {1.0, 15.2346874070, 31.4690115749, 11.9400905721,
                                       0.607771387771};
// 1.5 <= x < 4.
constexpr double kMiddleNumerator[] = {4.16438922228, 78.6994924154, 137.519416416, -142.046296688,
                                       -78.3359299449};
constexpr double kMiddleDenominator[] = {1.0, 43.3400022514, 263.505074721, 313.399215894,
                                         47.0668766060};
// 4 <= x < 12.
constexpr double kUpperNumerator[] = {-2296.60729780, -40262.1119975, 27464.7644705, 230661.510616,
                                      -212159.572323};
constexpr double kUpperDenominator[] = {1.0, -570.691009324, -24235.7409629, -146025.937511,
                                        -116328.495004};
// x >= 12: remainder of Stirling's formula, in 1 / x^2.
constexpr double kRemainderNumerator[] = {0.0692910599291889, 0.4917317610505968,
                                          0.279195317918525};
constexpr double kRemainderDenominator[] = {1.0, 6.012459259764103, 3.350343815022304};
constexpr double kHalfLogTwoPi = 0.918938533204673;
constexpr double kRemainderIsZero = 5.1e6;

}  // namespace

double DoubleLogGamma(double x) {
  if (x < 1.5) {
    double value = 0.0;
    double y = x;
    double factor = (x - 0.5) - 0.5;
    if (x < 0.5) {
      value = -std::log(x);
      y = x + 1.0;
      if (y == 1.0) {
        return value;
      }
      factor = x;
    }
    return value + factor * Horner(kNearNumerator, y) / Horner(kNearDenominator, y);
  }
  if (x < 4.0) {
    const double y = (x - 1.0) - 1.0;
    return y * Horner(kMiddleNumerator, x) / Horner(kMiddleDenominator, x);
  }
  if (x < 12.0) {
    return Horner(kUpperNumerator, x) / Horner(kUpperDenominator, x);
  }
  const double y = std::log(x);
  const double value = (x * (y - 1.0) - 0.5 * y) + kHalfLogTwoPi;
  if (x > kRemainderIsZero) {
    return value;
  }
  const double x1 = 1.0 / x;
  const double x2 = x1 * x1;
  return value + x1 * Horner(kRemainderNumerator, x2) / Horner(kRemainderDenominator, x2);
}

}  // namespace linfit
